// KyStreamBench.h: what the stream tests share: bytes as hexadecimal text, short ways to make trees, and a factory with
// its serializers.
#pragma once

#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "compositefactory/KyCCompositeFactory.h"
#include "support/KyTestPool.h"

using KyBytes = std::vector<unsigned char>;

// "01 02 AC" as bytes.
inline KyBytes bytesOf(const std::string& hex)
{
  KyBytes bytes;
  std::string digits;
  for (const char c : hex)
  {
    if (std::isspace(static_cast<unsigned char>(c)) != 0) continue;
    digits += c;
    if (digits.size() < 2) continue;
    bytes.push_back(static_cast<unsigned char>(std::stoul(digits, nullptr, 16)));
    digits.clear();
  }
  EXPECT_TRUE(digits.empty()) << "half a byte in " << hex;
  return bytes;
}

// And back: upper case, single spaces.
inline std::string hexOf(const unsigned char* bytes, std::size_t count)
{
  std::string hex;
  char digits[4];
  for (std::size_t n = 0; n < count; ++n)
  {
    std::snprintf(digits, sizeof digits, "%02X", bytes[n]);
    if (n != 0) hex += ' ';
    hex += digits;
  }
  return hex;
}

inline std::string hexOf(const KyCBuffer& buffer) { return hexOf(buffer.getStorage(), buffer.getWritePosition()); }
inline std::string hexOf(const KyBytes& bytes) { return hexOf(bytes.data(), bytes.size()); }

inline KyBytes bytesOf(const KyCBuffer& buffer)
{
  return KyBytes(buffer.getStorage(), buffer.getStorage() + buffer.getWritePosition());
}

inline void fill(KyCErrorListPool& pool, KyCBuffer& buffer, const KyBytes& bytes)
{
  buffer.reset();
  buffer.writeBuffer(pool, bytes.data(), static_cast<unsigned int>(bytes.size()), 1, -1);
}

// A node below its parent, or a free one.
inline KyCComposite* addNode(KyCErrorListPool& pool, KyCComposite* parent, unsigned int classId, unsigned int unitId,
                             const char* description)
{
  KyCComposite* const node = new (pool) KyCComposite(pool, classId, unitId, description);
  if (parent != nullptr)
  {
    EXPECT_EQ(parent->attach(node), 0);
  }
  return node;
}

template <typename T>
KyCParam* addParam(KyCErrorListPool& pool, KyCComposite* node, unsigned int id, const char* description, const T& value,
                   unsigned int flags = 0)
{
  KyCParam* const parameter = new (pool) KyCParam(pool, id, description, flags, value, nullptr);
  node->addParameter(pool, parameter);
  return parameter;
}

// Factory, serializer and deserializer, ready for use, and one buffer.
class KyStreamBench
{
public:
  explicit KyStreamBench(KyCErrorListPool& pool)
      : buffer(pool), factory(pool), serializer(pool), deserializer(pool), m_pool(pool)
  {
    factory.setBinarySerializer(pool, &serializer);
    factory.setBinaryDeserializer(pool, &deserializer);
  }

  // Each works on a fresh stream in the buffer.
  std::string store(const KyCComposite* root)
  {
    buffer.reset();
    factory.serialize(m_pool, root, 0, &buffer);
    return hexOf(buffer);
  }
  std::string store(const KyCParam& parameter)
  {
    buffer.reset();
    factory.serializeParameter(m_pool, &buffer, &parameter);
    return hexOf(buffer);
  }
  KyCComposite* read(const KyBytes& bytes)
  {
    fill(m_pool, buffer, bytes);
    return factory.deserialize(m_pool, nullptr, &buffer);
  }
  KyCComposite* read(const std::string& hex) { return read(bytesOf(hex)); }
  KyCParam* readParameter(const std::string& hex)
  {
    fill(m_pool, buffer, bytesOf(hex));
    KyCParam* parameter = nullptr;
    factory.deserializeParameter(m_pool, parameter, &buffer);
    return parameter;
  }

  KyCBuffer buffer;
  KyCCompositeFactory factory;
  KyCBinSerializer serializer;
  KyCBinDeserializer deserializer;

private:
  KyCErrorListPool& m_pool;
};

// A chain of nodes, each the only child of the one before.
inline KyCComposite* makeChain(KyCErrorListPool& pool, unsigned int levels)
{
  KyCComposite* const root = addNode(pool, nullptr, 1, 1, "");
  KyCComposite* node = root;
  for (unsigned int level = 1; level < levels; ++level)
    node = addNode(pool, node, 1, 1, "");
  return root;
}

// A small tree with every kind of record, every value type and repeated texts.
inline KyCComposite* makeSampleTree(KyCErrorListPool& pool)
{
  KyCComposite* const root = addNode(pool, nullptr, 1, 1, "BOARD");
  addParam(pool, root, 1, "a", static_cast<signed char>(-1));
  addParam(pool, root, 2, "a", static_cast<short>(-2));
  addParam(pool, root, 3, "b", -3);
  addParam(pool, root, 4, "b", -4LL);
  addParam(pool, root, 5, "", static_cast<unsigned char>(5), KyCParam::FLAG_CUSTOM);
  addParam(pool, root, 6, "", static_cast<unsigned short>(6));
  KyCComposite* const port = addNode(pool, root, 2, 300, "PORT");
  addParam(pool, port, 7, "a", 7u, KyCParam::FLAG_CUSTOM);
  addParam(pool, port, 8, "c", 8ULL);
  addParam(pool, port, 9, "c", 1.5f);
  addParam(pool, port, 10, "c", -2.0);
  KyCComposite* const other = addNode(pool, root, 2, 0xFFFFFFFFu, "PORT");
  addParam(pool, other, 300, "name", KyCString("a longer text"));
  addParam(pool, other, 0xFFFFFFFFu, "", KyCVersion(1, 2, 3, 300), KyCParam::FLAG_CUSTOM);
  addNode(pool, other, 0, 0, "");
  return root;
}
