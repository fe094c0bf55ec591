#include "MediaError.h"

namespace MediaError {

namespace {

// The HTTP status a source put in the details of its error, 0 when none.
int httpStatusOf(GstMessage* message)
{
    const GstStructure* details = nullptr;
    gst_message_parse_error_details(message, &details);
    gint status = 0;
    if (details && gst_structure_get_int(details, "http-status-code", &status) && status >= 400 && status < 600)
        return status;
    return 0;
}

int codeOf(const GError* error, GstMessage* message, Origin origin)
{
    if (origin == Origin::Sink)
        return OutputFailed;
    if (error->domain == GST_RESOURCE_ERROR) {
        if (const int status = httpStatusOf(message))
            return status;
        return error->code == GST_RESOURCE_ERROR_NOT_FOUND ? NotFound : Unreachable;
    }
    // A source that stops reading (an HTTP server that stalls until the
    // timeout) reports only that its stream stopped: it is unreachable, not
    // a format no decoder takes.
    if (origin == Origin::Source)
        return Unreachable;
    // Stream, core and library errors: nothing could make sense of the data.
    return Unsupported;
}

} // namespace

VexaError make(int code, const QString& uri, const QString& why)
{
    VexaError error;
    error.setCode(code);
    error.setMessage(QStringLiteral("Cannot play %1: %2").arg(uri, why));
    return error;
}

VexaError fromMessage(GstMessage* message, const QString& uri, Origin origin)
{
    GError* error = nullptr;
    gchar* debug = nullptr;
    gst_message_parse_error(message, &error, &debug);
    const int code = codeOf(error, message, origin);
    const VexaError result = make(code, uri, QString::fromUtf8(error->message));
    g_error_free(error);
    g_free(debug);
    return result;
}

} // namespace MediaError
