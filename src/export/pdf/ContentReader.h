#pragma once

#include "export/pdf/PageMarks.h"
#include "export/pdf/Qpdf.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvel {

/// Reads one content stream operator by operator and copies it, without the filled shapes that have
/// a mark's colour. Follows the graphics state as far as that needs: matrix and fill colour. Its
/// own scanner, because a stream is megabytes of glyphs that are only to be passed over.
class ContentReader {
public:
    struct Shape {
        int mark;
        QPDFObjectHandle::Rectangle area;
    };
    /// A form that the content draws, and the matrix it is drawn with.
    struct Form {
        std::string name;  ///< with its slash
        QPDFMatrix matrix;
    };

    ContentReader(const MarkColors& colors, int markCount, const QPDFMatrix& matrix)
        : m_colors(colors), m_markCount(markCount), m_state{matrix, std::nullopt} {}

    /// The content without the shapes of marks. To be called once.
    std::string filter(std::string_view content);

    const std::vector<Shape>& shapes() const { return m_shapes; }
    const std::vector<Form>& forms() const { return m_forms; }

private:
    struct State {
        QPDFMatrix matrix;
        std::optional<int> mark;  ///< whose colour is the fill colour
    };

    void readToken(std::size_t& position);
    void readWord(std::size_t& position);
    void execute(std::string_view name, std::size_t end);
    bool executeState(std::string_view name);
    bool executePath(std::string_view name);
    void finishPath(std::string_view name, std::size_t end);
    void addRectangle();
    void addPoints();
    void extend(double x, double y);
    double number(std::size_t fromEnd) const;
    std::optional<int> markOfColor() const;

    MarkColors m_colors;
    int m_markCount;
    State m_state;
    std::vector<State> m_saved;

    std::string_view m_content;
    std::string m_output;
    std::size_t m_copied = 0;
    std::size_t m_operands = 0;     // where those of the next operator begin
    std::vector<double> m_numbers;  // among them
    std::string_view m_name;        // the last name among them
    std::size_t m_pathStart = 0;
    std::optional<QPDFObjectHandle::Rectangle> m_path;  // its bounds, in the matrix's space
    bool m_isClipping = false;
    std::vector<Shape> m_shapes;
    std::vector<Form> m_forms;
};

}  // namespace corvel
