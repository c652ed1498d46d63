#pragma once

#include "model/Attachment.h"

#include <optional>
#include <string>
#include <vector>

namespace corvel {

class PersistenceController;

/// What is known of an attachment without its data.
struct AttachmentInfo {
    Uuid id;
    std::string filename;
    std::string mimeType;
    bool isInFile = false;
};

/// Attachments of notes. Data of 100 KB and more lies in files beside the database. Mutations save
/// before they return, unless said otherwise. Every member throws StoreError.
class AttachmentRepository {
public:
    explicit AttachmentRepository(
        PersistenceController& controller);  // must outlive the repository

    std::optional<Attachment> fetchAttachment(const Uuid& id) const;
    std::vector<Attachment> fetchAttachments(const Uuid& noteID) const;
    std::vector<AttachmentInfo> fetchInfos(const Uuid& noteID) const;
    std::optional<AttachmentInfo> fetchInfo(const Uuid& id) const;
    void create(const Attachment& attachment, const Uuid& noteID);
    /// As `create`, left unsaved: for a caller that stores a note and its attachments as one.
    void createUnsaved(const Attachment& attachment, const Uuid& noteID);
    void deleteAttachment(const Uuid& id);

private:
    PersistenceController& m_controller;
};

}  // namespace corvel
