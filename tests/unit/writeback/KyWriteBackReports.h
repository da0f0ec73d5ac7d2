// KyWriteBackReports.h: the reports of designated values and of the walks, written by hand.
#pragma once

#include <string>

#include "support/KyTestPool.h"

// Each names the parameter that it is about by its address.
inline KyReport noDesignatedValueSpecified(const std::string& function)
{
  return {0x1301001, function, "Internal error. Kyrel Support information: No designated value specified."};
}
inline KyReport cannotCreateDesignatedParameter(const std::string& parameter)
{
  return {0x1301002, "setDesignatedValue",
          "Internal error. Kyrel Support information: Cannot create parameter object to store designated value for "
          "parameter " +
              parameter + "."};
}
inline KyReport incompatibleType(const std::string& parameter)
{
  return {0x1301003, "setDesignatedValue",
          "Internal error. Kyrel Support information: Designated value for parameter " + parameter +
              " has incompatible type."};
}
inline KyReport noDesignatedValueDefined(const std::string& parameter)
{
  return {0x1301004, "adoptDesignatedValue",
          "Internal error. Kyrel Support information: No designated value defined for parameter " + parameter + "."};
}
inline KyReport unknownType(const std::string& parameter)
{
  return {0x1301005, "adoptDesignatedValue",
          "Internal error. Kyrel Support information: Parameter " + parameter + " has unknown type."};
}
inline KyReport cannotRetrieveDesignatedValue(const std::string& parameter)
{
  return {
      0x1301006, "adoptDesignatedValue",
      "Internal error. Kyrel Support information: Cannot retrieve designated value for parameter " + parameter + "."};
}
inline KyReport cannotSetValue(const std::string& function, const std::string& parameter)
{
  return {0x1301007, function, "Cannot set value of parameter " + parameter + "."};
}
inline KyReport cannotSetDesignatedValue(const std::string& parameter)
{
  return {0x130100A, "setDesignatedValue",
          "Internal error. Kyrel Support information: Cannot set designated value for parameter " + parameter + "."};
}

inline KyReport cannotWriteNewValue(const std::string& parameter)
{
  return {0x1300804, "apply", "Cannot write new value for parameter " + parameter + "."};
}
inline KyReport cannotAdoptNewValue(const std::string& parameter)
{
  return {0x1300805, "apply", "Cannot adopt new value for parameter " + parameter + "."};
}
inline KyReport changeNotImplemented(const std::string& parameter)
{
  return {0x1300806, "apply",
          "Internal error. Kyrel Support information: Cannot change value of parameter " + parameter +
              ". Feature is not implemented."};
}
inline KyReport cannotUpdateValue(const std::string& parameter)
{
  return {0x1300807, "updateParameters", "Cannot update value for parameter " + parameter + "."};
}
inline KyReport checkFailed(const std::string& parameter)
{
  return {0x1300811, "check", "Check failed for parameter " + parameter + "."};
}

// What the base libraries put in front of some of them.
inline KyReport outOfMemory() { return {0x1000000, "operator new", "Out of memory."}; }
inline KyReport cannotBeRead(const std::string& getter, const std::string& id, const std::string& own,
                             const std::string& other)
{
  return {0x1100800, getter, "Parameter " + id + " is of type " + own + "; it cannot be read as " + other + "."};
}
inline KyReport cannotBeSet(const std::string& setter, const std::string& id, const std::string& own,
                            const std::string& other)
{
  return {0x1100801, setter, "Parameter " + id + " is of type " + own + "; it cannot be set as " + other + "."};
}

// The pending value is a parameter of ID 0, of that name, and hangs nowhere.
inline KyReport cannotGetValueOfHolder() { return {0x1301008, "getValue", "Cannot get value of parameter DUMMY."}; }
inline KyReport cannotSetValueOfHolder() { return cannotSetValue("setValue", "DUMMY"); }
