// Long runs of random operations on the database and on a plain model of it, side by
// side: all records, lists with their bits, and the file's bytes are compared.
#include <random>

#include <gtest/gtest.h>

#include "graph_compare.h"
#include "session.h"

namespace {

class Twins {
public:
    explicit Twins(std::uint32_t seed) : m_random(seed) { m_session.emplace(m_folder); }

    void Run(int steps) {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            Step();
            if (step % 256 == 0)
                Compare();
            if (step % 1024 == 1023)
                Reload();
        }
        Compare();
    }

private:
    TempFolder m_folder;
    std::optional<Session> m_session;
    model::Graph m_graph;
    std::mt19937 m_random;
    std::vector<std::string> const m_names{
        "",
        "a.dll",
        "A.DLL",
        "b.exe",
        "x0123456789abcdef",
        "y0123456789abcdef",
        std::string(249, 'l'),
        std::string(250, 'm'),
        std::string(251, 'n'),
        std::string(600, 'o'),
    };

    std::uint32_t Below(std::size_t limit) {
        return static_cast<std::uint32_t>(m_random() % limit);
    }
    std::string const &AnyName() { return m_names[Below(m_names.size())]; }
    Bytes AnyData() {
        Bytes data(Below(3) == 0 ? Below(40) : 0);
        for (std::uint8_t &byte : data)
            byte = static_cast<std::uint8_t>(m_random());
        return data;
    }
    // An id that is mostly there; 0 if there is nothing at all.
    std::uint32_t AnyObject() {
        if (m_graph.objects.empty())
            return 0;
        auto found = m_graph.objects.begin();
        std::advance(found, Below(m_graph.objects.size()));
        return found->first;
    }
    // The same, the first one more often than others, so that its lists grow long.
    std::uint32_t AnyEnd() {
        return Below(4) == 0 && !m_graph.objects.empty() ? m_graph.objects.begin()->first
                                                         : AnyObject();
    }
    std::uint32_t AnyLink() {
        if (m_graph.links.empty() || Below(8) == 0)
            return Below(m_graph.lastLink + 3);
        auto found = m_graph.links.begin();
        std::advance(found, Below(m_graph.links.size()));
        return found->first;
    }
    CQVUObject *View(std::uint32_t id) { return m_session->Object(id); }

    void Step() {
        switch (Below(m_graph.objects.size() > 60 ? 22 : 20)) {
        case 0:
        case 1:
        case 2:
            return Add();
        case 3:
            return MakePersistent();
        case 4:
            return SetName();
        case 5:
            return SetData();
        case 6:
            return SetFlags();
        case 7:
            return MakeNewLink();
        case 8:
        case 9:
            return DeleteLink();
        case 10:
            return Lookup();
        case 11:
        case 20:
        case 21:
            return DeleteObject();
        default:
            return LinkTo();
        }
    }

    void Add() {
        constexpr std::uint32_t types[] = {0, 1, 2, 4, 8, 16, 32, 4096, 0x2000, 0xffffffff};
        std::string const &name = AnyName();
        std::uint32_t const type = types[Below(std::size(types))];
        auto const flags = static_cast<std::uint32_t>(m_random());
        Bytes data = AnyData();
        bool const keep = Below(2);
        CQVUObject *const made =
            (*m_session)
                ->AddObject(Below(2) || !name.empty() ? name.c_str() : nullptr, type, flags,
                            static_cast<unsigned long>(data.size()), data.data(), keep);
        std::uint32_t const id = m_graph.AddObject(name, type, flags, data, keep);
        EXPECT_EQ(made->GetUniqueID(), id);
        EXPECT_TRUE(SameObject(made, m_graph.Find(id)));
    }

    void LinkTo() {
        std::uint32_t const source = AnyEnd(), target = AnyEnd(), type = 1 + Below(3);
        if (source == 0)
            return;
        EXPECT_EQ(View(source)->LinkTo(View(target), type),
                  m_graph.LinkTo(source, target, type) ? 1 : 0);
        EXPECT_TRUE(SameObject(View(source), m_graph.Find(source)));
        EXPECT_TRUE(SameObject(View(target), m_graph.Find(target)));
    }

    void MakePersistent() {
        std::uint32_t const id = AnyObject();
        if (id == 0)
            return;
        EXPECT_EQ(View(id)->MakePersistent(), 1);
        m_graph.MakePersistent(id);
    }

    void SetName() {
        std::uint32_t const id = AnyObject();
        std::string name = AnyName();
        if (id == 0)
            return;
        EXPECT_EQ(View(id)->SetName(name.data()), 1);
        m_graph.SetName(id, name);
        EXPECT_TRUE(SameObject(View(id), m_graph.Find(id)));
    }

    void SetData() {
        std::uint32_t const id = AnyObject();
        Bytes data = AnyData();
        if (id == 0)
            return;
        EXPECT_EQ(View(id)->SetData(static_cast<unsigned long>(data.size()), data.data()), 1);
        m_graph.SetData(id, data);
        EXPECT_TRUE(SameObject(View(id), m_graph.Find(id)));
    }

    void SetFlags() {
        std::uint32_t const id = AnyObject();
        if (id == 0)
            return;
        auto const flags = static_cast<std::uint32_t>(m_random());
        View(id)->SetFlags(flags);
        m_graph.Find(id)->flags = flags;
    }

    void MakeNewLink() {
        std::uint32_t const source = AnyObject(), target = AnyObject();
        bool const keep = Below(2);
        EXPECT_EQ((*m_session)->MakeNewLink(source, target, 2, keep)->dwID,
                  m_graph.MakeNewLink(source, target, 2, keep));
    }

    void DeleteLink() {
        std::uint32_t const id = AnyLink();
        bool const both = Below(4) != 0;
        int const fromSource = both || Below(2), fromTarget = both || Below(2);
        EXPECT_EQ((*m_session)->DeleteLink(id, fromSource, fromTarget),
                  m_graph.DeleteLink(id, fromSource, fromTarget) ? 1 : 0);
    }

    void DeleteObject() {
        std::uint32_t const id = Below(10) == 0 ? Below(m_graph.lastObject + 3) : AnyObject();
        bool const first = id != 0 && id == m_graph.objects.begin()->first;
        if (first && Below(20) != 0)
            return;
        EXPECT_EQ((*m_session)->DeleteObject(id), m_graph.DeleteObject(id) ? 1 : 0);
    }

    void Lookup() {
        std::string name = AnyName();
        CQVUObject *const found = (*m_session)->LookupVFILE(name.data());
        model::Object const *const expected = m_graph.LookupVFILE(name);
        EXPECT_EQ(found ? found->dwID : 0, expected ? expected->id : 0) << name;
    }

    void Compare() { EXPECT_TRUE(SameGraph(m_session->Get(), m_graph)); }

    void Flush() {
        (*m_session)->Flush();
        CompareFile();
    }
    void CompareFile() {
        if (std::optional<Bytes> const bytes = m_graph.Flush(OwnStamp())) {
            EXPECT_EQ(ReadBytes(m_folder.DatabaseFile()), *bytes);
        }
    }
    // Lets go and attaches again, after a flush or without, as this process or another.
    void Reload() {
        Compare();
        if (Below(3) != 0)
            Flush();
        bool const save = Below(3) != 0;
        (*m_session)->SetSaveFlag(save);
        m_session.reset();
        if (save && m_graph.dirty)
            CompareFile();
        if (std::filesystem::exists(m_folder.DatabaseFile()) && Below(2))
            GiveAway(m_folder);
        m_graph = model::Graph::Load(ReadBytes(m_folder.DatabaseFile()), OwnStamp());
        m_session.emplace(m_folder);
        Compare();
    }
};

class StoreModel : public testing::TestWithParam<std::uint32_t> {};

} // namespace

TEST_P(StoreModel, Random_operations_give_what_the_model_gives) { Twins(GetParam()).Run(60000); }

INSTANTIATE_TEST_SUITE_P(Seeds, StoreModel, testing::Values(1u, 2u, 3u, 4u, 20261121u));
