#pragma once

#include <Brindle/collections/Collection.h>

#include <QString>

namespace Quillon {

/// An electrical standard that a pad can be set to. A value: its name says everything ("LVDS_2.5V").
class PadType {
public:
    /// No pad type: the name is empty.
    PadType() = default;
    explicit PadType(const QString& name) : _name(name) {}

    /// Every standard at every voltage that a pad supports: the single-ended ones, then the differential ones.
    static Brindle::Collection<PadType> getConcretes();

    /// Standard, "_", voltage and what else tells it apart: "SSTL_1.8V_II".
    const QString& getName() const { return _name; }
    /// The second piece of the name split at "_": "1.8V". Empty when the name has no "_".
    QString getVoltage() const;

    bool operator==(const PadType&) const = default;
    bool operator<(const PadType& other) const { return _name < other._name; }

private:
    QString _name;
};

} // namespace Quillon
