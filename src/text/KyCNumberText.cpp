// Numbers and versions as text.
#include "text/KyCNumberText.h"

#include "tree/KyInventoryAccess.h"

bool KyCNumberText::appendValue(KyCErrorListPool& pool, const KyCInventoryParameter& parameter)
{
  const KyCParam& param = *KyInventoryAccess::toParam(&parameter);
  switch (param.getType())
  {
    case KyCParam::TYPE_INT8:
      appendNumber(param.getValueInt8(pool));
      return true;
    case KyCParam::TYPE_INT16:
      appendNumber(param.getValueInt16(pool));
      return true;
    case KyCParam::TYPE_INT32:
      appendNumber(param.getValueInt32(pool));
      return true;
    case KyCParam::TYPE_LONG64:
      appendNumber(param.getValueLong64(pool));
      return true;
    case KyCParam::TYPE_UINT8:
      appendNumber(param.getValueUInt8(pool));
      return true;
    case KyCParam::TYPE_UINT16:
      appendNumber(param.getValueUInt16(pool));
      return true;
    case KyCParam::TYPE_UINT32:
      appendNumber(param.getValueUInt32(pool));
      return true;
    case KyCParam::TYPE_ULONG64:
      appendNumber(param.getValueULong64(pool));
      return true;
    case KyCParam::TYPE_FLOAT32:
      appendNumber(param.getValueFloat32(pool));
      return true;
    case KyCParam::TYPE_FLOAT64:
      appendNumber(param.getValueFloat64(pool));
      return true;
    case KyCParam::TYPE_VERSION:
      appendVersion(param.getValueKyCVersion(pool));
      return true;
    default:
      return false;
  }
}

void KyCNumberText::appendVersion(const KyCVersion& version)
{
  appendNumber(version.getMajor());
  append('.');
  appendNumber(version.getMinor());
  append('.');
  appendNumber(version.getMaintenance());
  append('.');
  appendNumber(version.getBuild());
}
