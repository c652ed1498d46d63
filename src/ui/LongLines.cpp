#include "ui/LongLines.h"

#include "app/editing/SoftBreaks.h"
#include "platform/Handle.h"

#include <string_view>

namespace corvel::longlines {

namespace {

constexpr const char* kInPieces = "corvel-in-pieces";
constexpr gunichar kSoftBreak = 0x2029;

void setInPieces(GtkTextBuffer* buffer, bool isInPieces) {
    g_object_set_data(G_OBJECT(buffer), kInPieces, isInPieces ? buffer : nullptr);
}

std::string sliceOf(GtkTextBuffer* buffer, const GtkTextIter& start, const GtkTextIter& end) {
    const Handle<char, g_free> text(gtk_text_buffer_get_text(buffer, &start, &end, TRUE));
    return text.get();
}

bool hasSeparator(GtkTextBuffer* buffer) {
    GtkTextIter start;
    GtkTextIter end;
    gtk_text_buffer_get_bounds(buffer, &start, &end);
    return sliceOf(buffer, start, end).find(editing::kSoftBreak) != std::string::npos;
}

void inserting(GtkTextBuffer* buffer, GtkTextIter* at, const char* text, int length, gpointer) {
    const std::string_view inserted(text, static_cast<std::size_t>(length));
    if (inserted.size() <= editing::kLongestWord) return;
    const auto pieces = editing::withSoftBreaks(inserted);
    if (!pieces || (!areInPieces(buffer) && hasSeparator(buffer))) return;
    setInPieces(buffer, true);
    g_signal_stop_emission_by_name(buffer, "insert-text");
    gtk_text_buffer_insert(buffer, at, pieces->data(), static_cast<int>(pieces->size()));
}

bool copied(GtkTextView* view) {
    auto* buffer = gtk_text_view_get_buffer(view);
    GtkTextIter start;
    GtkTextIter end;
    if (!areInPieces(buffer) || gtk_text_buffer_get_selection_bounds(buffer, &start, &end) == 0)
        return false;
    gdk_clipboard_set_text(gtk_widget_get_clipboard(GTK_WIDGET(view)),
                           textOf(buffer, start, end).c_str());
    return true;
}

void copying(GtkTextView* view, gpointer) {
    if (copied(view)) g_signal_stop_emission_by_name(view, "copy-clipboard");
}

void cutting(GtkTextView* view, gpointer) {
    if (!copied(view)) return;
    g_signal_stop_emission_by_name(view, "cut-clipboard");
    gtk_text_buffer_delete_selection(gtk_text_view_get_buffer(view), TRUE,
                                     gtk_text_view_get_editable(view));
}

}  // namespace

void load(GtkTextBuffer* buffer, const std::string& content) {
    const auto pieces = editing::withSoftBreaks(content);
    setInPieces(buffer, pieces.has_value());
    const std::string& text = pieces ? *pieces : content;
    gtk_text_buffer_set_text(buffer, text.data(), static_cast<int>(text.size()));
}

void watchInsertions(GtkTextBuffer* buffer) {
    g_signal_connect(buffer, "insert-text", G_CALLBACK(inserting), nullptr);
}

void watchClipboard(GtkTextView* view) {
    g_signal_connect(view, "copy-clipboard", G_CALLBACK(copying), nullptr);
    g_signal_connect(view, "cut-clipboard", G_CALLBACK(cutting), nullptr);
}

bool areInPieces(GtkTextBuffer* buffer) {
    return g_object_get_data(G_OBJECT(buffer), kInPieces) != nullptr;
}

std::string textOf(GtkTextBuffer* buffer, const GtkTextIter& start, const GtkTextIter& end) {
    std::string text = sliceOf(buffer, start, end);
    return areInPieces(buffer) ? editing::withoutSoftBreaks(std::move(text)) : text;
}

bool isPiece(const GtkTextIter& place) {
    if (!areInPieces(gtk_text_iter_get_buffer(&place))) return false;
    auto edge = place;
    if (gtk_text_iter_ends_line(&edge) == 0) gtk_text_iter_forward_to_line_end(&edge);
    if (gtk_text_iter_get_char(&edge) == kSoftBreak) return true;
    edge = place;
    gtk_text_iter_set_line_offset(&edge, 0);
    return gtk_text_iter_backward_char(&edge) != 0 && gtk_text_iter_get_char(&edge) == kSoftBreak;
}

}  // namespace corvel::longlines
