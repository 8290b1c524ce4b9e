// A database and a plain mirror of it, changed alike and at random, so that a test can ask
// both and compare. The same seed gives the same course on every system.
#pragma once

#include "attached.h"
#include "mirror.h"

#include <cstdint>
#include <random>
#include <string>
#include <vector>

class Chance {
public:
    explicit Chance(std::uint32_t seed) : m_engine(seed) {}
    std::uint32_t Below(std::size_t limit) {
        return static_cast<std::uint32_t>(m_engine() % limit);
    }
    bool OneIn(std::size_t limit) { return Below(limit) == 0; }
    template <class List> auto const &Pick(List const &list) {
        return list[Below(std::size(list))];
    }

private:
    std::mt19937 m_engine;
};

// How a course goes: links between anything, or trees with a disturbance now and then.
enum class Course { Wild, Tidy };

class Twin {
public:
    explicit Twin(std::uint32_t seed, Course course = Course::Wild);

    CQVUDatabase *Database() const { return m_attached.Get(); }
    CQVUObject *Object(mirror::Id id) const { return m_attached.Object(id); }
    mirror::Graph &Mirror() { return m_mirror; }
    Chance &Dice() { return m_dice; }

    // One random change of both.
    void Change();
    // The same, but never a reload: pointers and searches stay good as far as records do.
    void ChangeInPlace();
    // An id of an object, seldom one that was deleted or never given.
    mirror::Id AnyId();
    // An id of an object, or 0 for none.
    mirror::Id LiveId();
    // Mostly that of an OBJ_VFILE.
    mirror::Id AnyVFile();
    std::string AnyName();
    // A text that may be a path: of an object, put together from names, or damaged.
    std::string AnyPath();
    // The text above an object, as far as it has a path.
    std::string FolderOf(mirror::Id id);
    // The folder of another object of the same name, if there is one.
    std::string FolderWith(mirror::Id id);
    // Fails the running test where a record of the two differs.
    void ExpectEqual();

private:
    void ChangeWildly(std::uint32_t which);
    void ChangeTidily(std::uint32_t which);
    void Add();
    void Grow();
    void AddNamed(std::optional<std::string> const &name, std::uint32_t type, mirror::Id parent);
    bool IsTaken(mirror::Id parent, std::string const &name) const;
    void Link();
    void LooseLink();
    void RemoveObject();
    void RemoveLink();
    void Rename();
    void Persist();
    void Flag();
    void Reload(bool sameProcess);
    std::string Composed();
    std::string NameOf(mirror::Id id);

    Course m_course;
    Chance m_dice;
    Attached m_attached;
    mirror::Graph m_mirror;
    std::vector<std::string> m_names;
};
