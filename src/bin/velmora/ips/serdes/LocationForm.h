#pragma once

#include <QString>
#include <QStringList>

namespace Velmora {

/// What the tables of locations ask of the form that holds them.
class LocationForm {
public:
    LocationForm(const LocationForm&) = delete;
    LocationForm& operator=(const LocationForm&) = delete;

    virtual const QString& getSettingsGroup() const = 0;
    virtual int getSERCount() const = 0;
    virtual int getDESCount() const = 0;
    virtual QString getBankNumber() const = 0;
    /// The pads of all lines that are counted; an empty text for a line without one.
    virtual QStringList getLocations() const = 0;

protected:
    LocationForm() = default;
    ~LocationForm() = default;
};

} // namespace Velmora
