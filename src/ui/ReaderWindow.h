#pragma once

#include "ui/PageWindow.h"
#include "ui/PreviewView.h"

#include <vector>

namespace corvel {

/// The open note alone, in a column that is pleasant to read. It follows the note as it is edited
/// and closes when there is none.
class ReaderWindow : public PageWindow {
public:
    explicit ReaderWindow(Session& session);
    ~ReaderWindow() override;

    /// Shows the note that is open now, where the editor stands.
    void open();

protected:
    void relabel() override;

private:
    void noteOpened();

    PreviewView m_page;
    std::vector<ScopedConnection> m_connections;
};

}  // namespace corvel
