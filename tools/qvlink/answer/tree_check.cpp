#include "answer/tree_check.h"

#include "answer/place.h"

#include "linkdb.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace qvlink {
namespace {

constexpr int DeepestPath = 260;         // levels up to a root that paths are followed
constexpr std::size_t LongestPath = 999; // characters that a path's buffer holds

constexpr std::uint32_t RootTypes = OBJ_DRIVE | OBJ_HIVE;
constexpr std::uint32_t InTreeTypes = OBJ_PINNED | OBJ_FILE | OBJ_KEY | OBJ_VALUE;

class TreeCheck {
public:
    TreeCheck(FileImage const &image, FileCheck &check)
        : m_image(image), m_check(check), m_places(image.objects.size()) {}

    void Run() {
        FindParents();
        for (std::size_t i = 0; i < m_image.objects.size(); ++i) {
            if (m_image.objects[i].type & InTreeTypes) {
                Climb(i);
            }
        }
        CheckNames();
        TellNotes();
    }

private:
    enum class State { unknown, climbing, rooted, lost };
    struct PlaceInTree {
        std::size_t parent = NoParent;
        State state = State::unknown;
        int depth = 0;
        std::size_t length = 0; // of its path
    };
    static constexpr std::size_t NoParent = static_cast<std::size_t>(-1);

    void Problem(const char *check, FileObject const &object, const char *text) {
        m_check.problems.push_back({check, "object " + std::to_string(object.id) + " (" +
                                               std::string(object.name) + ") " + text});
    }

    std::size_t IndexOf(FileObject const *object) const {
        return static_cast<std::size_t>(object - m_image.objects.data());
    }

    // The first parent in the incoming list is the one that paths go by.
    void FindParents() {
        for (std::size_t i = 0; i < m_image.objects.size(); ++i) {
            FileObject const &object = m_image.objects[i];
            for (std::size_t k = 0; (object.type & InTreeTypes) && k < object.to.Size(); ++k) {
                FileLink const *const link = m_image.Link(object.to[k] & LINK_ENTRY_ID_MASK);
                FileObject const *const parent =
                    link && (link->type & ~PERSISTENT_BIT) == LINK_PARENT &&
                            link->target == object.id
                        ? m_image.Object(link->source)
                        : nullptr;
                if (!parent) {
                    continue;
                }
                if (m_places[i].parent == NoParent) {
                    m_places[i].parent = IndexOf(parent);
                } else {
                    ++m_severalParents;
                }
            }
        }
    }

    // Goes up until an object whose place is known, then tells it to all on the way.
    void Climb(std::size_t start) {
        std::vector<std::size_t> way;
        std::size_t at = start;
        while (at != NoParent && m_places[at].state == State::unknown &&
               (m_image.objects[at].type & InTreeTypes)) {
            m_places[at].state = State::climbing;
            way.push_back(at);
            at = m_places[at].parent;
        }
        PlaceInTree above = at == NoParent ? Lost() : PlaceAt(at);
        if (above.state == State::climbing) {
            Problem("parents", m_image.objects[at], "is below itself");
            above = Lost();
        } else if (above.state == State::lost && !way.empty() && (at == NoParent || !WasTold(at))) {
            Problem("parents", m_image.objects[way.back()], "isn't below any drive or hive");
        }
        for (; !way.empty(); way.pop_back()) {
            above = Settle(way.back(), above);
        }
    }

    static PlaceInTree Lost() {
        PlaceInTree place;
        place.state = State::lost;
        return place;
    }

    // Whether an object's loss was told before, as a file's or a key's is.
    bool WasTold(std::size_t index) const { return m_image.objects[index].type & InTreeTypes; }

    PlaceInTree PlaceAt(std::size_t index) const {
        FileObject const &object = m_image.objects[index];
        if (object.type & InTreeTypes) {
            return m_places[index];
        }
        PlaceInTree place = Lost();
        if (object.type & RootTypes) {
            place.state = State::rooted;
            place.length = object.name.size();
        }
        return place;
    }

    PlaceInTree const &Settle(std::size_t index, PlaceInTree const &above) {
        FileObject const &object = m_image.objects[index];
        PlaceInTree &place = m_places[index];
        place.state = above.state;
        place.depth = above.depth + 1;
        place.length = above.length + 1 + object.name.size();
        if (place.state == State::rooted && place.depth == DeepestPath) {
            Problem("depth", object, "lies deeper than paths are followed");
        }
        m_longPaths += place.state == State::rooted && place.length > LongestPath;
        return place;
    }

    // The same name twice at one place, letter by letter. A key and a value may share one.
    void CheckNames() {
        std::unordered_map<std::string, std::uint32_t> seen;
        for (std::size_t i = 0; i < m_image.objects.size(); ++i) {
            FileObject const &object = m_image.objects[i];
            bool const isTop = (object.type & (RootTypes | OBJ_VFILE)) != 0;
            if (!isTop && m_places[i].parent == NoParent) {
                continue;
            }
            std::string place = isTop ? "t" + std::to_string(object.type & ~PERSISTENT_BIT)
                                      : std::to_string(m_image.objects[m_places[i].parent].id) +
                                            (object.type & OBJ_VALUE ? "v" : "");
            std::string const name = isTop ? FoldName(object.name) : std::string(object.name);
            auto const [first, isNew] = seen.emplace(place.append("\\").append(name), object.id);
            if (!isNew) {
                Problem("twin-names", object,
                        ("has the name and the place of object " + std::to_string(first->second))
                            .c_str());
            }
        }
    }

    void TellNotes() {
        if (m_severalParents > 0) {
            m_check.notes.push_back({"parents", std::to_string(m_severalParents) +
                                                    " parent links beside an object's first"});
        }
        if (m_longPaths > 0) {
            m_check.notes.push_back({"long-paths", std::to_string(m_longPaths) +
                                                       " objects have paths of more than 999 "
                                                       "characters, which readers don't give"});
        }
    }

    FileImage const &m_image;
    FileCheck &m_check;
    std::vector<PlaceInTree> m_places; // of the objects, in their order
    std::uint64_t m_severalParents = 0;
    std::uint64_t m_longPaths = 0;
};

} // namespace

void CheckTree(FileImage const &image, FileCheck &check) { TreeCheck(image, check).Run(); }

} // namespace qvlink
