#pragma once

#include "app/editing/TextEdit.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel::editing {

/// Collects small changes of one text, which must not overlap, and makes one TextEdit of them.
class EditList {
public:
    void insert(std::size_t position, std::string text);
    void remove(std::size_t begin, std::size_t end);
    void replace(std::size_t begin, std::size_t end, std::string text);
    bool isEmpty() const { return m_changes.empty(); }

    /// Where a change at one end of the selection puts that end: what is inserted just there stays
    /// outside of a selection, and before a cursor.
    TextEdit toEdit(std::string_view text, const Selection& selection) const;

private:
    struct Change {
        TextRange range;
        std::string replacement;
    };
    enum class Side { before, after };

    std::vector<Change> inOrder() const;
    static std::size_t moved(const std::vector<Change>& changes, std::size_t position, Side side);

    std::vector<Change> m_changes;
};

}  // namespace corvel::editing
