#include "platform/posix/registry/places.h"

#include "platform/posix/registry/names.h"

namespace platform::registry {
namespace {

struct RootName {
    Root root;
    std::u16string_view shortName, longName;
};
constexpr RootName rootNames[] = {{Root::ClassesRoot, u"HKCR", u"HKEY_CLASSES_ROOT"},
                                  {Root::CurrentUser, u"HKCU", u"HKEY_CURRENT_USER"},
                                  {Root::LocalMachine, u"HKLM", u"HKEY_LOCAL_MACHINE"},
                                  {Root::Users, u"HKU", u"HKEY_USERS"},
                                  {Root::CurrentConfig, u"HKCC", u"HKEY_CURRENT_CONFIG"}};

} // namespace

std::optional<Root> TakeRoot(std::u16string_view &path) {
    std::u16string_view rest = path;
    std::string const name = Folded(TakeName(rest));
    for (RootName const &root : rootNames) {
        if (name != Folded(root.shortName) && name != Folded(root.longName))
            continue;
        path = rest;
        return root.root;
    }
    return std::nullopt;
}

std::size_t Places::Number(Root root) {
    return root == Root::CurrentConfig
               ? 4
               : static_cast<std::size_t>(root) - static_cast<std::size_t>(Root::ClassesRoot);
}

Places::Places(std::vector<Mount> const &mounts) {
    m_machine.name = u"HKLM";
    m_users.name = u"HKU";
    m_roots[Number(Root::LocalMachine)] = &m_machine;
    m_roots[Number(Root::Users)] = &m_users;
    m_roots[Number(Root::CurrentUser)] = At(&m_users, u"S-1-5-21-0-0-0-1000");
    m_roots[Number(Root::ClassesRoot)] = At(&m_machine, u"Software\\Classes");
    m_roots[Number(Root::CurrentConfig)] =
        At(&m_machine, u"System\\CurrentControlSet\\Hardware Profiles\\Current");
    for (Mount const &mount : mounts) {
        std::u16string_view path = mount.key;
        std::optional<Root> const root = TakeRoot(path);
        if (!root)
            continue;
        Place *place = At(m_roots[Number(*root)], path);
        place->hive = std::make_unique<Hive>(mount.file);
        for (; place; place = place->above)
            place->shown = true;
    }
}

Place *Places::At(Place *from, std::u16string_view path) {
    while (!path.empty()) {
        std::u16string_view const name = TakeName(path);
        auto &place = from->below[Folded(name)];
        if (!place) {
            place = std::make_unique<Place>();
            place->above = from;
        }
        place->name = name; // as it was told last
        from = place.get();
    }
    return from;
}

} // namespace platform::registry
