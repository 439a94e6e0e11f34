#pragma once

#include "platform/host/Mail.h"

#include <string>

namespace desktop {

/// `draft` as a file that a mail program opens for editing (RFC 5322, RFC 2045 and 2046): CRLF lines, everything in
/// US-ASCII but for addresses that are not. An HTML body comes with its plain text as the alternative. `X-Unsent: 1`
/// is what says that the message is a draft and not one that was received. The sender and the date are the mail
/// program's to add.
std::string mailMessage(const host::MailDraft& draft);

/// The same as the one argument of Thunderbird's `-compose` option: `to='...',subject='...',format=1,body='...'`.
std::string composeArgument(const host::MailDraft& draft);

}  // namespace desktop
