#include "hosts/desktop/MailMessage.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTextDocumentFragment>

#include <algorithm>

namespace desktop {

namespace {

constexpr qsizetype longestLine = 76;         // RFC 2045, 6.7 and 6.8
constexpr qsizetype longestEncodedPart = 45;  // bytes, so that an encoded word keeps to 75 characters (RFC 2047, 2)
const QByteArray endOfLine("\r\n");

/// A line break in a header would begin another header.
QByteArray onOneLine(const std::string& text) {
  QByteArray line = QByteArray::fromStdString(text);
  for (char& character : line) {
    if (character == '\r' || character == '\n') character = ' ';
  }
  return line.trimmed();
}

bool isPrintableAscii(const QByteArray& text) {
  return std::all_of(text.begin(), text.end(), [](char character) { return character >= ' ' && character <= '~'; });
}

bool continuesCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// Text in a header: as it is, or in encoded words (RFC 2047), none of which splits a character.
QByteArray headerText(const std::string& text) {
  const QByteArray line = onOneLine(text);
  if (isPrintableAscii(line) && !line.contains("=?")) return line;
  QByteArrayList words;
  for (qsizetype start = 0; start < line.size();) {
    qsizetype end = std::min(start + longestEncodedPart, line.size());
    while (end < line.size() && continuesCharacter(line[end])) --end;
    words.append("=?UTF-8?B?" + line.mid(start, end - start).toBase64() + "?=");
    start = end;
  }
  return words.join(endOfLine + " ");
}

QByteArray recipients(const host::MailDraft& draft, const QByteArray& separator) {
  QByteArrayList addresses;
  for (const auto& recipient : draft.recipients) addresses.append(onOneLine(recipient));
  return addresses.join(separator);
}

QByteArray quotedByte(char byte) {
  return '=' + QByteArray(1, byte).toHex().toUpper();
}

/// One line as quoted-printable (RFC 2045, 6.7). Blanks at its end are written out, because mail servers may lose
/// them.
QByteArray quotedPrintableLine(const QByteArray& line) {
  QByteArray encoded;
  qsizetype length = 0;
  for (qsizetype index = 0; index < line.size(); ++index) {
    const char byte = line[index];
    const bool isBlank = byte == ' ' || byte == '\t';
    const bool isPlain = (byte > ' ' && byte <= '~' && byte != '=') || (isBlank && index + 1 < line.size());
    const QByteArray piece = isPlain ? QByteArray(1, byte) : quotedByte(byte);
    if (length + piece.size() >= longestLine) {
      encoded += '=' + endOfLine;
      length = 0;
    }
    encoded += piece;
    length += piece.size();
  }
  return encoded;
}

QByteArray quotedPrintable(QByteArray text) {
  text.replace("\r\n", "\n");
  text.replace('\r', '\n');
  QByteArrayList lines;
  for (const auto& line : text.split('\n')) lines.append(quotedPrintableLine(line));
  return lines.join(endOfLine) + endOfLine;
}

QByteArray textPart(const QByteArray& subtype, const QByteArray& text) {
  return "Content-Type: text/" + subtype + "; charset=UTF-8" + endOfLine +  //
         "Content-Transfer-Encoding: quoted-printable" + endOfLine +        //
         endOfLine +                                                        //
         quotedPrintable(text);
}

/// The simplest alternative first, the one to be preferred last (RFC 2046, 5.1.4).
QByteArray alternatives(const QByteArray& html) {
  const QByteArray plain = QTextDocumentFragment::fromHtml(QString::fromUtf8(html)).toPlainText().toUtf8();
  // "=_" cannot occur in quoted-printable, so that no body ends early.
  const QByteArray boundary("=_quillop_alternatives");
  const QByteArray delimiter = "--" + boundary;
  return "Content-Type: multipart/alternative; boundary=\"" + boundary + '"' + endOfLine +  //
         endOfLine +                                                                        //
         delimiter + endOfLine + textPart("plain", plain) +                                 //
         delimiter + endOfLine + textPart("html", html) +                                   //
         delimiter + "--" + endOfLine;
}

/// A value of `-compose`. It ends at the first apostrophe that stands before a comma, and there is no way to escape
/// one: the typographic apostrophe takes its place.
QByteArray composeValue(QByteArray value) {
  return '\'' + value.replace("',", "\u2019,") + '\'';
}

}  // namespace

std::string mailMessage(const host::MailDraft& draft) {
  QByteArray message = "To: " + recipients(draft, "," + endOfLine + " ") + endOfLine;
  if (!draft.subject.empty()) message += "Subject: " + headerText(draft.subject) + endOfLine;
  message += "X-Unsent: 1" + endOfLine + "MIME-Version: 1.0" + endOfLine;
  const QByteArray body = QByteArray::fromStdString(draft.body);
  return (message + (draft.isHTML ? alternatives(body) : textPart("plain", body))).toStdString();
}

std::string composeArgument(const host::MailDraft& draft) {
  QByteArray body = QByteArray::fromStdString(draft.body);
  if (draft.isHTML) body.replace('\'', "&#39;");
  QByteArrayList fields{"to=" + composeValue(recipients(draft, ","))};
  if (!draft.subject.empty()) fields.append("subject=" + composeValue(onOneLine(draft.subject)));
  fields.append(draft.isHTML ? "format=1" : "format=2");
  fields.append("body=" + composeValue(body));
  return fields.join(',').toStdString();
}

}  // namespace desktop
