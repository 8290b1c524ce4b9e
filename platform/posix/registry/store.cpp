#include "platform/posix/registry/store.h"

#include "platform/posix/registry/names.h"

namespace platform::registry {
namespace {

constexpr std::int64_t idsAtOnce = 1024;

// A missing store is an empty one.
Code WithoutStore(Code code, Code otherwise) {
    return code == Connection::noStore ? otherwise : code;
}

} // namespace

void BindKey(Statement &statement, StoredKey const &key) {
    statement.Bind(1, key.parent).Bind(2, std::string_view(key.folded)).Bind(3, key.id);
}

Code Store::FindTop(std::u16string_view name, StoredKey &key) {
    Code const opened = WithoutStore(m_connection.OpenToRead(), notFound);
    if (opened != success)
        return opened;
    key = {0, Folded(name), name == u"HKLM" ? 1 : 2};
    return success;
}

Code Store::Find(StoredKey const &parent, std::u16string_view name, StoredKey &key) {
    Code const opened = WithoutStore(m_connection.OpenToRead(), notFound);
    if (opened != success)
        return opened;
    StoredKey found{parent.id, Folded(name), 0};
    {
        Statement find(m_connection, Sql::FindKey);
        find.Bind(1, found.parent).Bind(2, std::string_view(found.folded));
        if (find.Step())
            found.id = find.Number(0);
        else if (find.Result() != success)
            return find.Result();
    }
    if (found.id == 0)
        return notFound;
    key = std::move(found);
    return success;
}

Code Store::StateOf(StoredKey const &key, std::int64_t &generation) {
    Statement state(m_connection, Sql::KeyState);
    BindKey(state, key);
    if (state.Step()) {
        generation = state.Number(0);
        return success;
    }
    return state.Result() == success ? keyDeleted : state.Result();
}

Code Store::NoteChange(StoredKey const &key) {
    Statement note(m_connection, Sql::NoteChange);
    BindKey(note, key);
    note.Step();
    if (note.Result() != success)
        return note.Result();
    return m_connection.Changes() == 1 ? success : keyDeleted;
}

Code Store::TakeId(std::int64_t &id) {
    if (m_nextId == m_endOfIds) {
        Statement reserve(m_connection, Sql::ReserveIds);
        reserve.Bind(1, idsAtOnce);
        if (!reserve.Step())
            return reserve.Result() == success ? corrupt : reserve.Result();
        m_nextId = reserve.Number(0);
        m_endOfIds = m_nextId + idsAtOnce;
        reserve.Step();
        if (reserve.Result() != success)
            return reserve.Result();
    }
    id = m_nextId++;
    return success;
}

Code Store::Make(StoredKey const &parent, std::u16string_view name, StoredKey &key) {
    StoredKey made{parent.id, Folded(name), 0};
    Code code = TakeId(made.id);
    if (code == success)
        code = NoteChange(parent);
    if (code != success)
        return code;
    Statement add(m_connection, Sql::AddKey);
    add.Bind(1, made.parent).Bind(2, std::string_view(made.folded)).Bind(3, made.id).Bind(4, name);
    add.Step();
    if (add.Result() == success)
        key = std::move(made);
    return add.Result();
}

Code Store::Delete(StoredKey const &parent, StoredKey const &key) {
    {
        Statement any(m_connection, Sql::AnySubkey);
        if (any.Bind(1, key.id).Step())
            return accessDenied;
        if (any.Result() != success)
            return any.Result();
    }
    {
        Statement remove(m_connection, Sql::DeleteKey);
        BindKey(remove, key);
        remove.Step();
        if (remove.Result() != success)
            return remove.Result();
        if (m_connection.Changes() == 0)
            return keyDeleted;
    }
    {
        Statement values(m_connection, Sql::DeleteValues);
        values.Bind(1, key.id).Step();
        if (values.Result() != success)
            return values.Result();
    }
    return NoteChange(parent);
}

Code Store::Read(StoredKey const &key, std::u16string_view name, Value &value) {
    std::string const folded = Folded(name);
    {
        Statement read(m_connection, Sql::ReadValue);
        read.Bind(1, key.id).Bind(2, std::string_view(folded));
        if (read.Step()) {
            value = {std::u16string(read.Text(0)), static_cast<std::uint32_t>(read.Number(1)),
                     std::string(read.Bytes(2))};
            return success;
        }
        if (read.Result() != success)
            return read.Result();
    }
    std::int64_t generation = 0;
    Code const state = StateOf(key, generation);
    return state == success ? notFound : state;
}

Code Store::Set(StoredKey const &key, Value const &value) {
    Code const opened = m_connection.OpenToWrite();
    if (opened != success)
        return opened;
    std::string const folded = Folded(value.name);
    Statement set(m_connection, Sql::SetValue);
    BindKey(set, key);
    set.Bind(4, std::string_view(folded)).Bind(5, std::u16string_view(value.name));
    set.Bind(6, std::int64_t{value.type}).Bind(7, std::string_view(value.data));
    set.Step();
    if (set.Result() != success)
        return Broken(set.Result());
    return m_connection.Changes() == 1 ? success : keyDeleted;
}

Code Store::DeleteValue(StoredKey const &key, std::u16string_view name) {
    Change change(*this);
    if (change.Began() != success)
        return change.Began();
    Code code = NoteChange(key);
    if (code == success) {
        std::string const folded = Folded(name);
        Statement remove(m_connection, Sql::DeleteValue);
        remove.Bind(1, key.id).Bind(2, std::string_view(folded)).Step();
        code = remove.Result();
        if (code == success && m_connection.Changes() == 0)
            code = notFound;
    }
    return change.End(code);
}

} // namespace platform::registry
