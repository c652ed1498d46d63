#include "library/AttachmentRepository.h"

#include "model/PersistenceController.h"

#include <utility>

namespace corvel {

namespace {

constexpr std::string_view kColumns =
    "SELECT attachment.id, filename, mimeType, data, isInFile, thumbnailData FROM attachment ";

constexpr std::string_view kInfoColumns =
    "SELECT attachment.id, filename, mimeType, isInFile FROM attachment ";

AttachmentInfo infoFrom(const Query& query) {
    return {query.uuid(0), query.string(1), query.string(2), query.boolean(3)};
}

Attachment attachmentFrom(const Query& query, const AttachmentFiles& files) {
    Attachment attachment{query.uuid(0), query.string(1), query.string(2), {}, {}};
    if (query.boolean(4)) {
        attachment.data = files.read(attachment.id).value_or(std::vector<std::uint8_t>{});
    } else {
        attachment.data = query.blob(3);
    }
    if (!query.isNull(5)) attachment.thumbnailData = query.blob(5);
    return attachment;
}

void insert(Database& database, const Attachment& attachment, const Uuid& noteID, bool isInFile) {
    auto statement = database.query(
        "INSERT INTO attachment(id, filename, mimeType, data, isInFile, thumbnailData, notePk)"
        " SELECT ?,?,?,?,?,?,pk FROM note WHERE id=?");
    statement.bindAt(1, attachment.id);
    statement.bindAt(2, attachment.filename);
    statement.bindAt(3, attachment.mimeType);
    if (isInFile) {
        statement.bindAt(4, nullptr);
    } else {
        statement.bindAt(4, attachment.data);
    }
    statement.bindAt(5, isInFile);
    statement.bindAt(6, attachment.thumbnailData);
    statement.bindAt(7, noteID);
    statement.run();
}

}  // namespace

AttachmentRepository::AttachmentRepository(PersistenceController& controller)
    : m_controller(controller) {}

std::optional<Attachment> AttachmentRepository::fetchAttachment(const Uuid& id) const {
    static const std::string kSql = std::string(kColumns) + "WHERE attachment.id=?";
    auto query = m_controller.viewContext().database().query(kSql);
    query.bind(id);
    if (!query.next()) return std::nullopt;
    return attachmentFrom(query, m_controller.attachmentFiles());
}

std::vector<Attachment> AttachmentRepository::fetchAttachments(const Uuid& noteID) const {
    static const std::string kSql =
        std::string(kColumns) +
        "JOIN note ON note.pk=notePk WHERE note.id=? ORDER BY attachment.pk";
    std::vector<Attachment> attachments;
    auto query = m_controller.viewContext().database().query(kSql);
    query.bind(noteID);
    while (query.next()) {
        attachments.push_back(attachmentFrom(query, m_controller.attachmentFiles()));
    }
    return attachments;
}

std::vector<AttachmentInfo> AttachmentRepository::fetchInfos(const Uuid& noteID) const {
    static const std::string kSql =
        std::string(kInfoColumns) +
        "JOIN note ON note.pk=notePk WHERE note.id=? ORDER BY attachment.pk";
    std::vector<AttachmentInfo> infos;
    auto query = m_controller.viewContext().database().query(kSql);
    query.bind(noteID);
    while (query.next()) {
        infos.push_back(infoFrom(query));
    }
    return infos;
}

std::optional<AttachmentInfo> AttachmentRepository::fetchInfo(const Uuid& id) const {
    static const std::string kSql = std::string(kInfoColumns) + "WHERE attachment.id=?";
    auto query = m_controller.viewContext().database().query(kSql);
    query.bind(id);
    if (!query.next()) return std::nullopt;
    return infoFrom(query);
}

void AttachmentRepository::create(const Attachment& attachment, const Uuid& noteID) {
    createUnsaved(attachment, noteID);
    m_controller.viewContext().save();
}

void AttachmentRepository::createUnsaved(const Attachment& attachment, const Uuid& noteID) {
    const auto& files = m_controller.attachmentFiles();
    const bool isInFile = files.keeps(attachment.data.size());
    if (isInFile) files.write(attachment.id, attachment.data);
    Attachment kept = attachment;
    if (isInFile) kept.data.clear();
    m_controller.viewContext().apply(
        [kept = std::move(kept), noteID, isInFile](Database& database) {
            insert(database, kept, noteID, isInFile);
        });
}

void AttachmentRepository::deleteAttachment(const Uuid& id) {
    m_controller.viewContext().apply([id](Database& database) {
        database.query("DELETE FROM attachment WHERE id=?").bind(id).run();
    });
    m_controller.viewContext().save();
    m_controller.attachmentFiles().remove(id);
}

}  // namespace corvel
