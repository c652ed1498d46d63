#include "model/ViewContext.h"

#include "platform/MainThread.h"

#include <algorithm>
#include <utility>

namespace corvel {

namespace {

bool mayWorkLater(const StoreError& error) {
    return error.fault() != StoreFault::invalid && error.fault() != StoreFault::corrupt;
}

}  // namespace

ViewContext::Batch::~Batch() {
    try {
        takeBack();
    } catch (const StoreError&) {  // NOLINT(bugprone-empty-catch): what is not saved never will be
    }
}

void ViewContext::Batch::apply(const std::function<void()>& work) {
    const auto* outer = std::exchange(m_context.m_batch, this);
    try {
        work();
    } catch (...) {
        m_context.m_batch = outer;
        throw;
    }
    m_context.m_batch = outer;
}

bool ViewContext::Batch::isUnsaved() const {
    return std::any_of(m_context.m_unsaved.begin(), m_context.m_unsaved.end(),
                       [this](const Unsaved& each) { return each.batch == this; });
}

ViewContext::ViewContext(Database& database) : m_database(database) {}

ViewContext::~ViewContext() {
    if (!m_database.inTransaction()) return;
    try {
        m_database.execute("ROLLBACK");
    } catch (const StoreError&) {  // NOLINT(bugprone-empty-catch): closing rolls back as well
    }
}

void ViewContext::apply(Change change, std::string key) {
    checkMainThread();
    try {
        ensureTransaction();
        runOne(change);
    } catch (const StoreError& error) {
        if (mayWorkLater(error)) {
            remember(std::move(change), std::move(key));
            m_replayNeeded = true;
        }
        replayQuietly();
        throw;
    }
    remember(std::move(change), std::move(key));
}

void ViewContext::save() {
    checkMainThread();
    if (m_unsaved.empty() || m_openGroups > 0) return;
    ensureTransaction();
    try {
        m_database.query("COMMIT").run();
    } catch (const StoreError&) {
        if (!m_database.inTransaction()) m_replayNeeded = true;
        replayQuietly();
        throw;
    }
    m_unsaved.clear();
}

void ViewContext::ensureTransaction() {
    if (m_replayNeeded) replay();
    if (!m_database.inTransaction()) m_database.query("BEGIN IMMEDIATE").run();
}

// Without a savepoint, which would keep every page that a change touches as it was: what fails
// takes the transaction with it, and what is unsaved is made anew.
void ViewContext::runOne(const Change& change) {
    try {
        change(m_database);
    } catch (...) {
        if (m_database.inTransaction()) m_database.query("ROLLBACK").run();
        m_replayNeeded = !m_unsaved.empty();
        throw;
    }
}

void ViewContext::remember(Change change, std::string key) {
    const bool isLast =
        !m_unsaved.empty() && m_unsaved.back().key == key && m_unsaved.back().batch == m_batch;
    if (!key.empty() && isLast) {
        m_unsaved.back().change = std::move(change);
    } else {
        m_unsaved.push_back({std::move(key), std::move(change), m_batch});
    }
}

void ViewContext::forget(const Batch* batch) {
    if (std::erase_if(m_unsaved, [&](const auto& each) { return each.batch == batch; }) == 0)
        return;
    if (m_database.inTransaction()) m_database.query("ROLLBACK").run();
    m_replayNeeded = !m_unsaved.empty();
    replayQuietly();
}

void ViewContext::replay() {
    if (m_database.inTransaction()) m_database.execute("ROLLBACK");
    m_database.query("BEGIN IMMEDIATE").run();
    for (const auto& unsaved : m_unsaved) {
        runOne(unsaved.change);
    }
    m_replayNeeded = false;
}

void ViewContext::replayQuietly() {
    if (!m_replayNeeded) return;
    try {
        replay();
    } catch (const StoreError&) {  // NOLINT(bugprone-empty-catch): tried again by the next change
                                   // or save
    }
}

}  // namespace corvel
