#include "CSyncObject.h"

#include "platform/winapi.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <mutex>

namespace UTILS {
namespace {

constexpr std::size_t cacheLine = 64;
constexpr unsigned guardBits = 4;

struct alignas(cacheLine) Guard {
    std::mutex mutex;
};

// Stacks are pushed to outside of the section that they belong to. These keep them sound: one
// is held while a stack is touched, and nothing else is taken meanwhile.
Guard guards[1 << guardBits];

// A mutex may take memory when it is first locked, on some systems: that is done here, so
// that a lock taken by a destructor can't fail.
const bool guardsReady = [] {
    for (Guard &guard : guards)
        std::lock_guard<std::mutex> const lock(guard.mutex);
    return true;
}();

class StackLock {
public:
    explicit StackLock(const void *object) : m_lock(guards[IndexOf(object)].mutex) {}

private:
    // Objects that lie side by side have different guards.
    static std::size_t IndexOf(const void *object) {
        auto const address = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(object));
        return static_cast<std::size_t>(address * 0x9e3779b97f4a7c15u >> (64 - guardBits));
    }

    std::lock_guard<std::mutex> m_lock;
};

} // namespace

CSyncObject::CSyncObject(const std::string &objectName) : attached(0) { Init(objectName); }

CSyncObject::CSyncObject(const CSyncObject &other) : attached(0) {
    Init(std::string());
    Copy(other);
}

CSyncObject &CSyncObject::operator=(const CSyncObject &other) {
    if (this != &other)
        Copy(other);
    return *this;
}

CSyncObject::~CSyncObject() = default;

void CSyncObject::Init(const std::string &objectName) {
    name = objectName;
    states.reserve(2); // a first Lock needs no memory, so destructors may lock
    states.push_back(0);
    attached = 0;
}

// The other's stack has another guard: never both at once.
void CSyncObject::Copy(const CSyncObject &other) {
    std::string newName = other.name;
    std::vector<int> newStates;
    {
        StackLock const lock(&other);
        newStates.reserve(other.states.size() + 1);
        newStates = other.states;
    }
    name.swap(newName);
    attached = other.attached;
    StackLock const lock(this);
    states.swap(newStates);
}

void CSyncObject::Attach() { attached = 1; }

void CSyncObject::UnAttach() { attached = 0; }

int CSyncObject::Lock() {
    StackLock const lock(this);
    states.push_back(1);
    return 1;
}

int CSyncObject::UnLock() {
    StackLock const lock(this);
    if (states.size() < 2)
        return 0;
    states.pop_back();
    return 1;
}

int CSyncObject::GetState(int index) const {
    StackLock const lock(this);
    std::size_t const at = index == -1 ? states.size() - 1 : static_cast<std::size_t>(index);
    return at < states.size() ? states[at] : 0;
}

int CSyncObject::IsObjectAttached() const { return attached; }

std::string CSyncObject::GetObjName() const { return name; }

const char *CSyncObject::derived_class() const { return ClassName(typeid(*this)); }

CCriticalSection::CCriticalSection() : CSyncObject(std::string()), section(), released(0) {
    win::InitializeCriticalSection(&section);
}

// The section and its mark aren't copied.
CCriticalSection::CCriticalSection(const CCriticalSection &other)
    : CSyncObject(other), section(), released(0) {
    win::InitializeCriticalSection(&section);
}

CCriticalSection &CCriticalSection::operator=(const CCriticalSection &other) {
    CSyncObject::operator=(other);
    return *this;
}

CCriticalSection::~CCriticalSection() { win::DeleteCriticalSection(&section); }

int CCriticalSection::Lock() {
    CSyncObject::Lock();
    win::EnterCriticalSection(&section);
    return 1;
}

int CCriticalSection::UnLock() {
    if (CSyncObject::UnLock()) {
        released = 1;
        win::LeaveCriticalSection(&section);
    }
    return 1;
}

std::string CCriticalSection::GetObjName() const { return CSyncObject::GetObjName(); }

} // namespace UTILS
