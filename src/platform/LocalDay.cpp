#include "platform/LocalDay.h"

#include "platform/Handle.h"

#include <glib.h>

namespace corvel {

std::string localDay(Date date) {
    const Handle<GDateTime, g_date_time_unref> moment(
        g_date_time_new_from_unix_local(date.seconds()));
    const Handle<gchar, g_free> text(moment ? g_date_time_format(moment.get(), "%Y-%m-%d")
                                            : nullptr);
    return text ? text.get() : "0000-00-00";
}

}  // namespace corvel
