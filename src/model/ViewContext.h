#pragma once

#include "platform/Database.h"

#include <functional>
#include <string>
#include <vector>

namespace corvel {

/// The store's one connection with its set of unsaved changes: an open transaction. The first
/// change begins it, `save` commits it, and nothing to commit writes nothing.
///
/// SQLite rolls a transaction back by itself when a disk is full. The context therefore remembers
/// every change since the last save as a function and applies them again, so that unsaved changes
/// outlive a failed save and are written by the next one that succeeds.
class ViewContext {
public:
    /// A change must give the same rows whenever it runs, and hold by value what it writes.
    using Change = std::function<void(Database&)>;

    explicit ViewContext(Database& database);  // the database must outlive this context
    ViewContext(const ViewContext&) = delete;
    ViewContext& operator=(const ViewContext&) = delete;
    ~ViewContext();

    /// Runs `change` now. When it throws because the store cannot write, the change is kept for the
    /// next save and the error is passed on; after any other error nothing of it remains. A change
    /// with the same non-empty `key` as the last unsaved one replaces it in what is remembered.
    void apply(Change change, std::string key = {});

    /// While a group lives, `save` waits: what many operations change is committed as one, by
    /// `commit` or else by the first save after the group.
    class Group {
    public:
        explicit Group(ViewContext& context) : m_context(context) { ++m_context.m_openGroups; }
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;
        ~Group() {
            if (m_isOpen) --m_context.m_openGroups;
        }
        /// Closes the group and saves. Throws StoreError.
        void commit() {
            m_isOpen = false;
            --m_context.m_openGroups;
            m_context.save();
        }

    private:
        ViewContext& m_context;
        bool m_isOpen = true;
    };

    /// Changes of one long piece of work, applied in many turns of the main loop and committed by
    /// one `save`. Whoever saves meanwhile commits them as well; when they are taken back, what
    /// others changed stays. Destroying the batch takes back what is not saved.
    class Batch {
    public:
        explicit Batch(ViewContext& context) : m_context(context) {}
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
        ~Batch();

        /// What `work` changes is the batch's; what `work` throws is passed on.
        void apply(const std::function<void()>& work);
        bool isUnsaved() const;
        void takeBack() { m_context.forget(this); }

    private:
        ViewContext& m_context;
    };

    bool hasChanges() const { return !m_unsaved.empty(); }

    /// Commits the unsaved changes. Throws StoreError and keeps them when that fails.
    void save();

    /// For reading; unsaved changes are seen.
    Database& database() const { return m_database; }

private:
    struct Unsaved {
        std::string key;
        Change change;
        const Batch* batch;
    };

    void ensureTransaction();
    void runOne(const Change& change);
    void remember(Change change, std::string key);
    void forget(const Batch* batch);
    void replay();
    void replayQuietly();

    Database& m_database;
    std::vector<Unsaved> m_unsaved;
    bool m_replayNeeded = false;
    int m_openGroups = 0;
    const Batch* m_batch = nullptr;  ///< whose changes are being applied
};

}  // namespace corvel
