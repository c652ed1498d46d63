#pragma once

#include "export/pdf/PageMarks.h"
#include "export/pdf/Qpdf.h"

#include <optional>
#include <string>
#include <vector>

namespace corvel {

/// Reads one content stream operator by operator and copies it, without the filled shapes that have
/// a mark's colour. Follows the graphics state as far as that needs: matrix and fill colour.
class ContentReader : public QPDFObjectHandle::TokenFilter {
public:
    struct Shape {
        int mark;
        QPDFObjectHandle::Rectangle area;
    };
    /// A form that the content draws, and the matrix it is drawn with.
    struct Form {
        std::string name;
        QPDFMatrix matrix;
    };

    ContentReader(const MarkColors& colors, int markCount, const QPDFMatrix& matrix)
        : m_colors(colors), m_markCount(markCount), m_state{matrix, std::nullopt} {}

    void handleToken(const QPDFTokenizer::Token& token) override;
    void handleEOF() override;

    const std::vector<Shape>& shapes() const { return m_shapes; }
    const std::vector<Form>& forms() const { return m_forms; }

private:
    struct State {
        QPDFMatrix matrix;
        std::optional<int> mark;  ///< whose colour is the fill colour
    };

    void execute(const std::string& name);
    bool executeState(const std::string& name);
    bool executePath(const std::string& name);
    void finishPath(const std::string& name);
    void addRectangle();
    void addPoints();
    void extend(double x, double y);
    double number(std::size_t fromEnd) const;
    std::optional<int> markOfColor() const;
    void flush();

    MarkColors m_colors;
    int m_markCount;
    State m_state;
    std::vector<State> m_saved;
    std::vector<QPDFTokenizer::Token> m_operands;  // of the operator to come, without white space
    std::vector<QPDFTokenizer::Token> m_waiting;   // not written yet: they may be a mark's shape
    std::optional<QPDFObjectHandle::Rectangle> m_path;  // bounds, in the space of the stream's user
    bool m_isClipping = false;
    std::vector<Shape> m_shapes;
    std::vector<Form> m_forms;
};

}  // namespace corvel
