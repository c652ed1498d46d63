#include "library/SortOption.h"

namespace corvel {

const char* rawValue(SortOption option) {
    switch (option) {
        case SortOption::modifiedDate:
            return "modifiedDate";
        case SortOption::createdDate:
            return "createdDate";
        case SortOption::title:
            return "title";
        case SortOption::wordCount:
            return "wordCount";
    }
    return "modifiedDate";
}

SortOption sortOptionFrom(std::string_view text) {
    for (const auto option : kSortOptions) {
        if (text == rawValue(option)) return option;
    }
    return SortOption::modifiedDate;
}

Text label(SortOption option) {
    switch (option) {
        case SortOption::modifiedDate:
            return {"Data modyfikacji", "Modified Date"};
        case SortOption::createdDate:
            return {"Data utworzenia", "Created Date"};
        case SortOption::title:
            return {"Tytuł", "Title"};
        case SortOption::wordCount:
            return {"Liczba słów", "Word Count"};
    }
    return {"", ""};
}

}  // namespace corvel
