#pragma once

#include <clocale>
#include <locale>
#include <string>

/// Sets a locale with a decimal comma for both the C and the C++ library, as far as the system has one, until it ends.
class ForeignLocale {
public:
    ForeignLocale() : _standard(std::locale::global(std::locale(std::locale(), new DecimalComma))) {
        for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "es_ES.UTF-8", "it_IT.UTF-8", "pt_BR.UTF-8"}) {
            if (std::setlocale(LC_NUMERIC, name))
                return;
        }
    }
    ~ForeignLocale() {
        std::locale::global(_standard);
        std::setlocale(LC_NUMERIC, "C");
    }
    ForeignLocale(const ForeignLocale&) = delete;
    ForeignLocale& operator=(const ForeignLocale&) = delete;

private:
    class DecimalComma : public std::numpunct<char> {
    protected:
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::locale _standard;
};
