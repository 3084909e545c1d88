// Base64 for the user name and password of AUTH LOGIN.
#pragma once

#include <QByteArray>
#include <QString>

namespace orm {

// The standard alphabet with "=" padding, of the text's UTF-8 bytes. With
// lineLength 1 or more a CR LF goes in after each lineLength characters, as
// long as characters follow; none closes the text.
QString Base64Encode(const QString& text, int lineLength);
QString Base64Encode(const QByteArray& bytes, int lineLength);

}  // namespace orm
