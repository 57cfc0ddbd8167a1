#pragma once

#include <velmora/form/CheckMark.h>

#include <QString>

namespace Brindle {
class Exception;
} // namespace Brindle

namespace Velmora {

class Form;

/// What a sentence on the form is about: the field whose label it begins with, or the column of a table, of which it
/// may tell the "line". A label that stands in several sections is followed by " (" and the title of one, or means
/// all. Empty when it begins with no label.
CheckedParts findParts(const Form& form, const QString& problem);

/// What the keys that `CheckMark::getKeys` gives stand for; a row of a table is its first cell that can be filled in.
CheckedParts findPartsOf(const Form& form, const QStringList& keys);

/// The fields that hold the text that an exception calls its "value".
CheckedParts findHolders(const Form& form, const Brindle::Exception& exception);

/// What the exception says: its message and its fields as the console shows them, but for the key of an argument.
QString describe(const Brindle::Exception& exception);

} // namespace Velmora
