// SPDX-License-Identifier: GPL-3.0-or-later
#include "submission/SubmissionRecords.h"

#include "transport/frmHTTPMX.h"

namespace relay {

std::string_view resultWord(std::int16_t result) noexcept {
    static constexpr std::string_view words[] = {"",
                                                 "",
                                                 "Success",
                                                 "Failed",
                                                 "Submission Timeout",
                                                 "Cancelled",
                                                 "Close",
                                                 "Exception Error",
                                                 "Script Error",
                                                 "Invalid Host",
                                                 "Server Error",
                                                 "Connection Timeout",
                                                 "File Not Found",
                                                 "Unknown Error",
                                                 "Server Error"};
    if (result < 2 || result > 14) return "Unknown Error";
    return words[static_cast<std::size_t>(result)];
}

std::int16_t classifyReply(std::int32_t code) noexcept {
    if (code < 499) return Success;
    if (code == 499) return Failed;
    if (code >= 500 && code <= 599) return ServerError;
    if (code == frmHTTPMX::kTimedOut) return SubmissionTimeout;
    if (code == frmHTTPMX::kStartFailed) return StartFailed;
    return UnknownError;
}

}  // namespace relay
