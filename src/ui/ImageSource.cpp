#include "ui/ImageSource.h"

#include "platform/Handle.h"
#include "platform/ImageType.h"
#include "ui/StreamReader.h"

#include <memory>
#include <string_view>
#include <utility>

namespace corvel {

namespace {

/// What an asynchronous call carries to its answer.
template <typename Done>
struct Request {
    Glib::RefPtr<Gio::Cancellable> cancellable;
    Done done;
    std::size_t limit = 0;
};

using FilesRequest = Request<ImageSource::PathsDone>;
using ImageRequest = Request<ImageSource::BytesDone>;

ImageSource::Paths pathsIn(const GValue* value) {
    ImageSource::Paths paths;
    if (value == nullptr || !G_VALUE_HOLDS(value, GDK_TYPE_FILE_LIST)) return paths;
    const auto* files = static_cast<GSList*>(g_value_get_boxed(value));
    for (; files != nullptr; files = files->next) {
        const Handle<char, g_free> path(g_file_get_path(G_FILE(files->data)));
        if (path) paths.emplace_back(path.get());
    }
    return paths;
}

template <typename Source, auto Finish>
void filesRead(GObject* source, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<FilesRequest> request(static_cast<FilesRequest*>(data));
    const GValue* value = Finish(reinterpret_cast<Source*>(source), result, nullptr);
    if (!request->cancellable->is_cancelled()) request->done(pathsIn(value));
}

template <typename Source, auto Finish>
void imageOpened(GObject* source, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<ImageRequest> request(static_cast<ImageRequest*>(data));
    const GObjectHandle<GInputStream> stream(
        Finish(reinterpret_cast<Source*>(source), result, nullptr, nullptr));
    if (request->cancellable->is_cancelled()) return;
    if (!stream) return request->done(std::nullopt);
    readStream(stream.get(), request->limit, request->cancellable, std::move(request->done));
}

/// The types of images, ended by a null pointer.
std::vector<const char*> typeList() {
    std::vector<const char*> types(std::begin(kImageTypes), std::end(kImageTypes));
    types.push_back(nullptr);
    return types;
}

}  // namespace

bool ImageSource::hasFiles(GdkContentFormats* formats) {
    return gdk_content_formats_contain_gtype(formats, GDK_TYPE_FILE_LIST) != FALSE ||
           gdk_content_formats_contain_mime_type(formats, "text/uri-list") != FALSE;
}

bool ImageSource::hasText(GdkContentFormats* formats) {
    return gdk_content_formats_contain_gtype(formats, G_TYPE_STRING) != FALSE ||
           gdk_content_formats_contain_mime_type(formats, "text/plain") != FALSE ||
           gdk_content_formats_contain_mime_type(formats, "text/plain;charset=utf-8") != FALSE;
}

bool ImageSource::hasImage(GdkContentFormats* formats) {
    for (const char* type : kImageTypes) {
        if (gdk_content_formats_contain_mime_type(formats, type) != FALSE) return true;
    }
    return gdk_content_formats_contain_gtype(formats, GDK_TYPE_TEXTURE) != FALSE;
}

GdkContentFormats* ImageSource::formats() {
    auto* builder = gdk_content_formats_builder_new();
    gdk_content_formats_builder_add_gtype(builder, GDK_TYPE_FILE_LIST);
    gdk_content_formats_builder_add_gtype(builder, GDK_TYPE_TEXTURE);
    gdk_content_formats_builder_add_mime_type(builder, "text/uri-list");
    for (const char* type : kImageTypes) {
        gdk_content_formats_builder_add_mime_type(builder, type);
    }
    return gdk_content_formats_builder_free_to_formats(builder);
}

void ImageSource::readFiles(GdkClipboard* from,
                            const Glib::RefPtr<Gio::Cancellable>& cancellable,
                            PathsDone done) {
    gdk_clipboard_read_value_async(from, GDK_TYPE_FILE_LIST, G_PRIORITY_DEFAULT,
                                   cancellable->gobj(),
                                   &filesRead<GdkClipboard, gdk_clipboard_read_value_finish>,
                                   new FilesRequest{cancellable, std::move(done)});
}

void ImageSource::readFiles(GdkDrop* from,
                            const Glib::RefPtr<Gio::Cancellable>& cancellable,
                            PathsDone done) {
    gdk_drop_read_value_async(from, GDK_TYPE_FILE_LIST, G_PRIORITY_DEFAULT, cancellable->gobj(),
                              &filesRead<GdkDrop, gdk_drop_read_value_finish>,
                              new FilesRequest{cancellable, std::move(done)});
}

void ImageSource::readImage(GdkClipboard* from,
                            std::size_t limit,
                            const Glib::RefPtr<Gio::Cancellable>& cancellable,
                            BytesDone done) {
    auto types = typeList();
    gdk_clipboard_read_async(from, types.data(), G_PRIORITY_DEFAULT, cancellable->gobj(),
                             &imageOpened<GdkClipboard, gdk_clipboard_read_finish>,
                             new ImageRequest{cancellable, std::move(done), limit});
}

void ImageSource::readImage(GdkDrop* from,
                            std::size_t limit,
                            const Glib::RefPtr<Gio::Cancellable>& cancellable,
                            BytesDone done) {
    auto types = typeList();
    gdk_drop_read_async(from, types.data(), G_PRIORITY_DEFAULT, cancellable->gobj(),
                        &imageOpened<GdkDrop, gdk_drop_read_finish>,
                        new ImageRequest{cancellable, std::move(done), limit});
}

}  // namespace corvel
