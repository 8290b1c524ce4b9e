// Transactions of the store.
#include "platform/posix/registry/store.h"

namespace platform::registry {

Code Store::Run(Sql sql) {
    Statement statement(m_connection, sql);
    statement.Step();
    return statement.Result();
}

// What failed within the caller's transaction may have been half done.
Code Store::Broken(Code code) {
    if (m_inTransaction && m_broken == success)
        m_broken = code;
    return code;
}

void Store::Forget() {
    if (m_connection.InTransaction())
        Run(Sql::Rollback);
    m_nextId = m_endOfIds = 0; // their reservation may be undone as well
}

Code Store::Begin() {
    if (m_inTransaction)
        return busy;
    Code code = m_connection.OpenToWrite();
    if (code == success)
        code = Run(Sql::Begin);
    m_inTransaction = code == success;
    m_broken = success;
    return code;
}

Code Store::Commit() {
    if (!m_inTransaction)
        return invalidParameter;
    m_inTransaction = false;
    Code const code = m_broken == success ? Run(Sql::Commit) : m_broken;
    if (code != success)
        Forget();
    return code;
}

void Store::Rollback() {
    if (m_inTransaction)
        Forget();
    m_inTransaction = false;
}

// Without one each question is a transaction of its own, so a failure to begin is none.
Store::Reading::Reading(Store &store)
    : m_store(store), m_own(store.m_connection.IsOpen() && !store.m_connection.InTransaction() &&
                            store.Run(Sql::BeginReading) == success) {}

Store::Reading::~Reading() {
    if (m_own && m_store.Run(Sql::Commit) != success && m_store.m_connection.InTransaction())
        m_store.Run(Sql::Rollback);
}

Store::Change::Change(Store &store) : m_store(store) {
    if (store.m_inTransaction) {
        m_code = store.m_broken;
        return;
    }
    m_code = store.m_connection.OpenToWrite();
    if (m_code == success)
        m_code = store.Run(Sql::Begin);
    m_own = m_code == success;
}

Store::Change::~Change() {
    if (m_own)
        m_store.Forget();
    else if (m_code == success && !m_ended)
        m_store.Broken(noMemory);
}

Code Store::Change::End(Code code) {
    m_ended = true;
    bool const refused = code == notFound || code == accessDenied || code == keyDeleted;
    if (!m_own)
        return code == success || refused ? code : m_store.Broken(code);
    if (code == success)
        code = m_store.Run(Sql::Commit);
    m_own = code != success;
    return code;
}

} // namespace platform::registry
