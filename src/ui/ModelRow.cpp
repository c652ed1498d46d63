#include "ui/ModelRow.h"

#include <algorithm>

namespace corvel {

ModelRow::ModelRow(Preferences& preferences, AIProviderType type)
    : m_preferences(preferences), m_type(type) {
    show();
    m_row.onChosen([this] { chosen(); });
    m_changes = preferences.signalChanged().connect([this](const std::string& key) {
        if (key == std::string("aiModel_") + rawValue(m_type)) show();
    });
}

void ModelRow::show() {
    const auto inUse = m_preferences.aiModel(rawValue(m_type));
    std::vector<std::string> identifiers;
    for (const auto& model : modelsOf(m_type))
        identifiers.emplace_back(model.identifier);
    auto place = std::ranges::find(identifiers, inUse);
    if (place == identifiers.end()) place = identifiers.insert(place, inUse);
    const auto index = static_cast<std::size_t>(place - identifiers.begin());
    m_isShowing = true;
    // The list stands open while one is chosen by keys: only another list is set.
    if (identifiers != m_identifiers) {
        m_identifiers = std::move(identifiers);
        std::vector<std::string> labels;
        for (const auto& identifier : m_identifiers)
            labels.push_back(modelLabel(m_type, identifier));
        m_row.setChoices(labels);
    }
    m_row.choose(index);
    m_isShowing = false;
}

void ModelRow::chosen() {
    if (m_isShowing || m_row.chosen() >= m_identifiers.size()) return;
    const auto identifier = m_identifiers[m_row.chosen()];
    if (identifier == m_preferences.aiModel(rawValue(m_type))) return;
    m_preferences.setAIModel(rawValue(m_type), identifier);
}

}  // namespace corvel
