#pragma once

#include "app/Session.h"
#include "export/Exporter.h"
#include "platform/PrintView.h"
#include "platform/RemoteImages.h"
#include "platform/gtk/WebRoom.h"

#include <memory>

namespace corvel {

/// Makes the exporter of each format. What only some need is made when it is first needed.
class NoteExporters {
public:
    explicit NoteExporters(Session& session) : m_session(session) {}  // must outlive this

    std::unique_ptr<Exporter> make(ExportFormat format);

private:
    std::unique_ptr<PrintView> makePrintView(const PaperSize& paper);
    RemoteImages* remoteImages();

    Session& m_session;
    std::unique_ptr<RemoteImages> m_remoteImages;
    std::unique_ptr<WebRoom> m_room;
};

}  // namespace corvel
