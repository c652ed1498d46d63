#pragma once

#include "ai/AIProviderType.h"
#include "app/settings/Preferences.h"
#include "platform/ScopedConnection.h"
#include "ui/Rows.h"

#include <string>
#include <vector>

namespace corvel {

/// The choice of one provider's model. One that is not among the known ones is offered as well, by
/// its identifier, for as long as it is the one in use.
class ModelRow {
public:
    /// `preferences` must outlive the row.
    ModelRow(Preferences& preferences, AIProviderType type);
    ModelRow(const ModelRow&) = delete;
    ModelRow& operator=(const ModelRow&) = delete;
    ~ModelRow() = default;

    adw::ComboRow& row() { return m_row; }

private:
    void show();
    void chosen();

    Preferences& m_preferences;
    AIProviderType m_type;
    adw::ComboRow m_row;
    std::vector<std::string> m_identifiers;
    bool m_isShowing = false;
    ScopedConnection m_changes;
};

}  // namespace corvel
