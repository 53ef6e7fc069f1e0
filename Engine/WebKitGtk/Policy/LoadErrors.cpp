#include "Engine/WebKitGtk/Policy/LoadErrors.h"

#include <gio/gio.h>
#include <webkit/webkit.h>

#include "Base/Texts.h"
#include "BrowserCore/Text/Text.h"
#include "Engine/WebKitGtk/Policy/ReportedURL.h"

namespace orvel {

namespace {

using Kind = LoadError::Kind;

Kind ioErrorKind(int code, bool isSecure) {
  switch (code) {
    case G_IO_ERROR_CANCELLED:
      // A refused TLS handshake sometimes surfaces as this on an address nobody stopped.
      return isSecure ? Kind::ConnectionLost : Kind::Cancelled;
    case G_IO_ERROR_CONNECTION_REFUSED:
    case G_IO_ERROR_PROXY_FAILED:
      return Kind::CannotConnect;
    case G_IO_ERROR_TIMED_OUT:
      return Kind::TimedOut;
    case G_IO_ERROR_NETWORK_UNREACHABLE:
      return Kind::NotConnected;
    case G_IO_ERROR_HOST_NOT_FOUND:
      return Kind::CannotFindHost;
    case G_IO_ERROR_HOST_UNREACHABLE:
      return Kind::CannotConnect;
    case G_IO_ERROR_CONNECTION_CLOSED:
    case G_IO_ERROR_PARTIAL_INPUT:
      return Kind::ConnectionLost;
    default:
      return Kind::Other;
  }
}

Kind kindOf(const GError& error, bool isSecure) {
  if (error.domain == WEBKIT_NETWORK_ERROR)
    return error.code == WEBKIT_NETWORK_ERROR_CANCELLED ? Kind::Cancelled : Kind::Other;
  if (error.domain == WEBKIT_POLICY_ERROR)
    return error.code == WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE
               ? Kind::PolicyInterrupted
               : Kind::Other;
  if (error.domain == WEBKIT_MEDIA_ERROR) return Kind::PolicyInterrupted;
  if (error.domain == G_RESOLVER_ERROR)
    return error.code == G_RESOLVER_ERROR_TEMPORARY_FAILURE ? Kind::DNSLookupFailed
                                                            : Kind::CannotFindHost;
  if (error.domain == G_TLS_ERROR)
    return error.code == G_TLS_ERROR_BAD_CERTIFICATE ? Kind::BadCertificate : Kind::ConnectionLost;
  if (error.domain == G_IO_ERROR) return ioErrorKind(error.code, isSecure);
  return Kind::Other;
}

}  // namespace

LoadError loadError(const GError& error, const char* failingURL) {
  LoadError result;
  result.failingURL = reportedURL(failingURL);
  result.kind = kindOf(error, result.failingURL && result.failingURL->hasScheme("https"));
  result.domain = g_quark_to_string(error.domain);
  result.code = error.code;
  result.localizedDescription = text::repairedUTF8(error.message ? error.message : "");
  return result;
}

LoadError timeoutError(const char* failingURL) {
  const GError error{G_IO_ERROR, G_IO_ERROR_TIMED_OUT,
                     const_cast<char*>(_("The server took too long to answer."))};
  return loadError(error, failingURL);
}

LoadError restrictedPortError(const URL& address) {
  const GError error{WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_CANNOT_USE_RESTRICTED_PORT,
                     const_cast<char*>(_("The port of this address belongs to another service."))};
  return loadError(error, address.text().c_str());
}

LoadError refusalError(int status, const URL& address) {
  return {.kind = Kind::Other,
          .domain = "HTTP",
          .code = status,
          .localizedDescription = filled(_("The server answered with the error {status}."),
                                         {{"status", std::to_string(status)}}),
          .failingURL = address};
}

}  // namespace orvel
