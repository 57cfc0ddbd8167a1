#pragma once

#include <QtGlobal>

QT_BEGIN_NAMESPACE
class QColor;
class QTextDocument;
QT_END_NAMESPACE

/// What a text is drawn in.
struct VelmoraHighlightColors {
    const QColor& keyword;
    const QColor& type;
    const QColor& literal; ///< Numbers, characters and strings.
    const QColor& comment;
};

/// What the module of highlighting does, in plain types, so that nothing else depends on the library that knows the
/// languages.
struct VelmoraHighlightModule {
    /// Highlights what the document holds from now on in the language of a file of that name, which is not
    /// highlighted when it is of none. The document owns what does it.
    void (*highlight)(QTextDocument& document, const char* filename, const VelmoraHighlightColors& colors);
};

/// The function of the module that gives it.
extern "C" const VelmoraHighlightModule* velmora_highlight_module();
