#pragma once

#include "platform/Handle.h"

#include <unicode/brkiter.h>
#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace corvel::text {

/// A break iterator of the root locale that reads UTF-8 in place.
class BreakRules {
public:
    using Maker = icu::BreakIterator* (*)(const icu::Locale&, UErrorCode&);

    explicit BreakRules(Maker make) {
        UErrorCode status = U_ZERO_ERROR;
        m_iterator.reset(make(icu::Locale::getRoot(), status));
        if (U_FAILURE(status) != 0) throw std::runtime_error("ICU has no break rules");
    }

    icu::BreakIterator& over(std::string_view text) {
        UErrorCode status = U_ZERO_ERROR;
        m_text.reset(utext_openUTF8(m_text.release(), text.data(),
                                    static_cast<std::int64_t>(text.size()), &status));
        m_iterator->setText(m_text.get(), status);
        m_iterator->first();
        return *m_iterator;
    }

private:
    Handle<UText, utext_close> m_text;
    std::unique_ptr<icu::BreakIterator> m_iterator;
};

}  // namespace corvel::text
