// The two kinds of locks with their insides open to tests.
#pragma once

#include "CSyncObject.h"
#include "visitor.h"

class OpenSync : public UTILS::CSyncObject {
public:
    explicit OpenSync(std::string const &objectName = "") : CSyncObject(objectName) {}
    OpenSync(OpenSync const &other) = default;
    OpenSync &operator=(OpenSync const &other) = default;
    ~OpenSync() override = default;

    using CSyncObject::Attach;
    using CSyncObject::derived_class;
    using CSyncObject::GetObjName;
    using CSyncObject::GetState;
    using CSyncObject::IsObjectAttached;
    using CSyncObject::Lock;
    using CSyncObject::UnAttach;
    using CSyncObject::UnLock;

    using CSyncObject::attached;
    using CSyncObject::name;
    using CSyncObject::states;
};

class OpenSection : public UTILS::CCriticalSection {
public:
    using CCriticalSection::attached;
    using CCriticalSection::name;
    using CCriticalSection::released;
    using CCriticalSection::section;
    using CCriticalSection::states;
};

class LockVisitor : public Visitor {
public:
    explicit LockVisitor(UTILS::CCriticalSection &lock)
        : Visitor([&lock] { lock.Lock(); }, [&lock] { lock.UnLock(); }) {}
};
