#pragma once

#include <QObject>

/// The text forms below the cryptography: base64 lines, block directives, configuration.
class EncodingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void base64InLines();
    void refusedBase64_data();
    void refusedBase64();
    void base64IsCanonical();
    void base64WithWhiteSpace_data();
    void base64WithWhiteSpace();
    void directiveExpressions_data();
    void directiveExpressions();
    void blockDirectives_data();
    void blockDirectives();
    void configurations_data();
    void configurations();
};
