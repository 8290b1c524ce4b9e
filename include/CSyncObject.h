// Named locks: each string and container holds one, and takes it for its compound
// operations.
#pragma once

#include <string>
#include <typeinfo>
#include <vector>

#include "linkdb_export.h"
#include "platform/wintypes.h"

namespace UTILS {

// The name of a type in the form "class UTILS::CCriticalSection"; classes of this namespace
// among the arguments of a template are told in the same form. The text stays where it is
// for the life of the process. Never throws: without memory it is "class ?". Any thread.
QVLINKDB_API const char *ClassName(const std::type_info &type) noexcept;

// What locks have in common: a name and a stack of states. Made to be derived from.
//
// Threads: the stack may be used by several at a time; the name and the mark of `Attach`
// may not be while one of them writes (Attach, UnAttach, assignment).
class QVLINKDB_API CSyncObject {
protected:
    // Throws the exception of std::string or std::vector when memory is short, as does all
    // else that has to grow; the object then is as it was.
    explicit CSyncObject(const std::string &objectName);
    CSyncObject(const CSyncObject &other); // name, stack and mark of the other
    CSyncObject &operator=(const CSyncObject &other);

    virtual ~CSyncObject();
    virtual void Attach();   // sets the mark
    virtual void UnAttach(); // takes it away
    // Pushes 1, and answers 1. Needs memory for the second state above the first only:
    // nested locks.
    virtual int Lock();
    // Pops a state, and answers 1; with the first alone on the stack answers 0.
    virtual int UnLock();
    // The state at the top for -1, else the one at the index from the bottom; 0 where there
    // is none.
    virtual int GetState(int index) const;
    virtual int IsObjectAttached() const;
    virtual std::string GetObjName() const;
    virtual const char *derived_class() const; // ClassName of the object's own class

    std::vector<int> states; // the first, a 0, never goes away
    std::string name;
    int attached;

private:
    void Init(const std::string &objectName);
    void Copy(const CSyncObject &other);
};

// A lock of this process that the thread which holds it may take again.
//
// What it promises: between Lock and its UnLock no other thread is inside. What it doesn't:
// the state that GetState tells counts threads that still wait for the lock as well, and
// an UnLock by a thread that doesn't hold the lock takes another's state away. A copy is a
// lock of its own that nobody holds, though it starts with the other's states; leaving it by
// them is the same mistake.
class QVLINKDB_API CCriticalSection : public CSyncObject {
public:
    CCriticalSection(); // has no name
    CCriticalSection(const CCriticalSection &other);
    CCriticalSection &operator=(const CCriticalSection &other);
    ~CCriticalSection() override; // whatever the states

    using CSyncObject::Attach;
    using CSyncObject::derived_class;
    using CSyncObject::GetState;
    using CSyncObject::IsObjectAttached;
    using CSyncObject::UnAttach;

    // Pushes 1, then enters, and answers 1. Throws when memory for the state is short; the
    // lock isn't taken then.
    int Lock() override;
    // Pops a state, then leaves. Does nothing with the first state alone on the stack. Answers
    // 1 in both cases.
    int UnLock() override;
    std::string GetObjName() const override;

protected:
    CRITICAL_SECTION section;
    int released; // 1 after an UnLock that left; nothing here reads it
};

} // namespace UTILS
