#include "app/editing/DifferencePieces.h"

#include "app/editing/TextEdit.h"

#include <algorithm>

namespace corvel::editing {

namespace {

// Fewer are as short as the line that would stand for them.
constexpr std::size_t kLeastFolded = 4;

/// Where the first `count` lines end.
std::size_t endOfLines(std::string_view text, std::size_t count) {
    std::size_t end = 0;
    for (; count > 0 && end < text.size(); --count)
        end = std::min(text.find('\n', end), text.size() - 1) + 1;
    return end;
}

/// Where the last `count` lines begin; one that is not ended counts.
std::size_t startOfLines(std::string_view text, std::size_t count) {
    std::size_t start = text.size();
    for (; count > 0 && start > 0; --count) {
        const auto before = start < 2 ? text.npos : text.rfind('\n', start - 2);
        start = before == text.npos ? 0 : before + 1;
    }
    return start;
}

class PieceMaker {
public:
    PieceMaker(std::size_t context, std::size_t runs) : m_context(context), m_runs(runs) {}

    void addKept(std::string_view text, std::size_t run, bool startsLine) {
        // The rest of a changed line is no line of context.
        const bool endsLine = text.ends_with('\n');
        const std::size_t begin = run == 0 ? 0 : endOfLines(text, m_context + (startsLine ? 0 : 1));
        const std::size_t end =
            run + 1 == m_runs ? text.size() : startOfLines(text, m_context + (endsLine ? 0 : 1));
        const auto middle = begin < end ? text.substr(begin, end - begin) : std::string_view();
        const auto lines = static_cast<std::size_t>(std::ranges::count(middle, '\n'));
        if (lines < kLeastFolded || m_runs == 1) return add({DifferencePiece::Kind::kept, text});
        add({DifferencePiece::Kind::kept, text.substr(0, begin)});
        add({DifferencePiece::Kind::folded, middle, lines});
        add({DifferencePiece::Kind::kept, text.substr(end)});
    }

    void add(const DifferencePiece& piece) {
        if (!piece.text.empty()) m_pieces.push_back(piece);
    }

    std::vector<DifferencePiece> take() { return std::move(m_pieces); }

private:
    std::size_t m_context;
    std::size_t m_runs;
    std::vector<DifferencePiece> m_pieces;
};

}  // namespace

std::vector<DifferencePiece> piecesOf(std::string_view before,
                                      std::string_view after,
                                      const std::vector<DifferenceRun>& runs,
                                      std::size_t context) {
    using Kind = DifferenceRun::Kind;
    PieceMaker maker(context, runs.size());
    std::size_t changes = 0;
    for (std::size_t run = 0; run < runs.size(); ++run) {
        const auto kind = runs[run].kind;
        if (kind == Kind::kept) {
            const auto start = runs[run].after.begin;
            maker.addKept(slice(after, runs[run].after), run,
                          start == 0 || after[start - 1] == '\n');
            continue;
        }
        const bool isExchange =
            kind == Kind::added && run > 0 && runs[run - 1].kind == Kind::removed;
        if (!isExchange) ++changes;
        const bool isRemoved = kind == Kind::removed;
        maker.add({isRemoved ? DifferencePiece::Kind::removed : DifferencePiece::Kind::added,
                   isRemoved ? slice(before, runs[run].before) : slice(after, runs[run].after), 0,
                   changes - 1});
    }
    return maker.take();
}

}  // namespace corvel::editing
