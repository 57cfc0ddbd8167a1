#pragma once

#include <QString>

/// The names under which the program keeps its state and its users' preferences in the settings store.
namespace Velmora::SettingsKeys {

inline const QString geometry = QStringLiteral("geometry");
inline const QString windowState = QStringLiteral("windowState");
inline const QString isMaximized = QStringLiteral("isMaximized");
inline const QString consoleSplitter = QStringLiteral("consoleSplitter");

// Preferences, and what counts when nothing is stored.
inline const QString theme = QStringLiteral("theme");
inline const QString defaultTheme = QStringLiteral("light");
inline const QString animations = QStringLiteral("animations");
inline const QString defaultAnimations = QStringLiteral("Always");
inline const QString size = QStringLiteral("size");
inline const QString defaultSize = QStringLiteral("50"); // percent

// Fields of the generator forms, each below a group named after the form's class.
inline const QString entity = QStringLiteral("Entity");
inline const QString path = QStringLiteral("Path");
inline const QString filepath = QStringLiteral("Filepath");
inline const QString inputDataWidth = QStringLiteral("InputDataWidth");
inline const QString outputDataWidth = QStringLiteral("OutputDataWidth");
inline const QString tapCount = QStringLiteral("TapCount");
inline const QString dspCount = QStringLiteral("DSPCount");
inline const QString saturationStage = QStringLiteral("SaturationStage");
inline const QString coefficientWidth = QStringLiteral("CoefficientWidth");
inline const QString coefficientMode = QStringLiteral("CoefficientMode");
inline const QString coefficientCount = QStringLiteral("CoefficientCount");
inline const QString coefficients = QStringLiteral("Coefficients");
inline const QString toBeTruncated = QStringLiteral("ToBeTruncated");
inline const QString clkAux1Pattern = QStringLiteral("ClkAux1Pattern");
inline const QString prefix = QStringLiteral("Prefix");
inline const QString wordClock = QStringLiteral("WordClock");
inline const QString dataSize = QStringLiteral("DataSize");
inline const QString serCount = QStringLiteral("SERCount");
inline const QString desCount = QStringLiteral("DESCount");
inline const QString bankNumber = QStringLiteral("BankNumber");
inline const QString ser = QStringLiteral("SER"); // a subgroup
inline const QString des = QStringLiteral("DES"); // a subgroup
inline const QString padType = QStringLiteral("PadType");
inline const QString differential = QStringLiteral("Differential");
inline const QString slewRate = QStringLiteral("SlewRate");
inline const QString outputCapacity = QStringLiteral("OutputCapacity");
inline const QString termination = QStringLiteral("Termination");
inline const QString terminationReference = QStringLiteral("TerminationReference");
inline const QString turbo = QStringLiteral("Turbo");
inline const QString inputSignalSlope = QStringLiteral("InputSignalSlope");
inline const QString trainingValue = QStringLiteral("TrainingValue");
inline const QString triggerCount = QStringLiteral("TriggerCount");
inline const QString inputCount = QStringLiteral("InputCount");
inline const QString captureDepth = QStringLiteral("CaptureDepth");
inline const QString triggerMode = QStringLiteral("TriggerMode");
inline const QString captureMode = QStringLiteral("CaptureMode");
inline const QString windowCaptureLength = QStringLiteral("WindowCaptureLength");
inline const QString preTriggerSamples = QStringLiteral("PreTriggerSamples");
inline const QString userDataDelay = QStringLiteral("UserDataDelay");
inline const QString multipleLevelTrigger = QStringLiteral("MultipleLevelTrigger");
inline const QString storeTrigger = QStringLiteral("StoreTrigger");
inline const QString storeWindow = QStringLiteral("StoreWindow");

} // namespace Velmora::SettingsKeys
