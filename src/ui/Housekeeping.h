#pragma once

#include "library/AttachmentSweep.h"
#include "platform/ScopedConnection.h"

namespace corvel {

/// What is tidied up once after a start, in the loop's idle time.
class Housekeeping {
public:
    explicit Housekeeping(Library& library) : m_attachments(library) {}

    void start();

private:
    bool workOnce();

    AttachmentSweep m_attachments;
    ScopedConnection m_work;
};

}  // namespace corvel
