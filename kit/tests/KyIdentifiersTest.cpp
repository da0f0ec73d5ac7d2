// MAC and IP addresses and UUIDs by their form.
#include "KyIdentifiers.h"

#include <gtest/gtest.h>

#include <random>

#include "KyLabels.h"

using namespace KyNInventoryKit;

namespace
{
// All identifiers of a text: "mac:00:1b:21:3c:4d:5e ipv4:10.2.3.4"; harmless ones with a "-" in front.
std::string identifiersOf(const std::string& text, bool isVersion = false)
{
  std::string found;
  for (std::size_t at = 0; at < text.size();)
  {
    Identifier identifier;
    if (!identifierAt(text, at, isVersion, identifier))
    {
      ++at;
      continue;
    }
    constexpr const char* s_kinds[] = {"uuid", "mac", "ipv6", "ipv4"};
    found += (found.empty() ? "" : " ") + std::string(identifier.isHarmless ? "-" : "") +
             s_kinds[static_cast<int>(identifier.kind)] + "=" + text.substr(at, identifier.length);
    at += identifier.length;
  }
  return found;
}
}    // namespace

TEST(KyIdentifiers, findsMacAddressesInTheirNotations)
{
  EXPECT_EQ(identifiersOf("00:1B:21:3c:4d:5e"), "mac=00:1B:21:3c:4d:5e");
  EXPECT_EQ(identifiersOf("eth0 00-1B-21-3C-4D-5E."), "mac=00-1B-21-3C-4D-5E");
  EXPECT_EQ(identifiersOf("(001b.213c.4d5e)"), "mac=001b.213c.4d5e");
  EXPECT_EQ(identifiersOf("80:00:00:26:fe:80:00:00:00:00:00:00:24:8a:07:03:00:1e:39:fe"),
            "mac=80:00:00:26:fe:80:00:00:00:00:00:00:24:8a:07:03:00:1e:39:fe");
  EXPECT_EQ(identifiersOf("mac:00:1b:21:3c:4d:5e"), "mac=00:1b:21:3c:4d:5e");
}

TEST(KyIdentifiers, findsMacAddressesOfThreeGroupsWhateverJoinsThem)
{
  EXPECT_EQ(identifiersOf("0025-9095-7112"), "mac=0025-9095-7112");
  EXPECT_EQ(identifiersOf("mac:0025:9095:7112, (001B:213c:4D5e)."), "mac=0025:9095:7112 mac=001B:213c:4D5e");
  EXPECT_EQ(identifiersOf("021b-21ff-fe3c-4d5e"), "mac=021b-21ff-fe3c-4d5e");
  for (const char* text :
       {"0025-9095", "0025-9095-711", "0025-9095-71122", "0025-9095-7112-3456", "0025:9095-7112", "ab-0025-9095-7112",
        "0025-9095-7112-ab", "0003:046D:C52B.0001", "x0025-9095-7112", "4c4c4544-0042-3510-8052-b4c04f4a4e3"})
    EXPECT_EQ(identifiersOf(text), "") << text;
  EXPECT_EQ(identifiersOf("2001:0470:1f0b::1 ::0025:9095:7112"), "ipv6=2001:0470:1f0b::1 ipv6=::0025:9095:7112");
  EXPECT_EQ(identifiersOf("0025-9095-7112", true), "");
}

TEST(KyIdentifiers, wordsBehindTheLabelHostAreTakenWhereTheyLookLikeNames)
{
  const auto wordsOf = [](const std::string& text)
  {
    std::string words;
    for (const LabelledWord& word : labelledWords(text))
    {
      EXPECT_TRUE(word.isHost) << text;
      words += (words.empty() ? "" : " ") + text.substr(word.begin, word.length);
    }
    return words;
  };
  EXPECT_EQ(wordsOf("host=rack7"), "rack7");
  EXPECT_EQ(wordsOf("Host: db.example.com, up"), "db.example.com");
  EXPECT_EQ(wordsOf("{\"host\":\"alpha\",\"port\":80}"), "alpha");
  EXPECT_EQ(wordsOf("host:rack7:8080"), "rack7");
  for (const char* text : {"host=8080", "host: 10.2.3.4", "host: fe80::1", "host=00:1b:21:3c:4d:5e", "Host bridge",
                           "Host: bridge", "host rack7", "scsi host0: ahci", "USB Host: Controller", "http://host:80/",
                           "localhost: rack7", "host: 0x1F", "host="})
    EXPECT_EQ(wordsOf(text), "") << text;
}

TEST(KyIdentifiers, takesNoPciAddressTimeOrHalfMacAddressForOne)
{
  for (const char* text : {"0000:02:00.1", "8086:1521", "12:34:56", "00:1b:21:3c:4d", "00:1b:21:3c:4d:5",
                           "00:1b:21-3c:4d:5e", "std::beef", "x00:1b:21:3c:4d:5e", "4096", "a", ":", "::x"})
    EXPECT_EQ(identifiersOf(text), "") << text;
}

TEST(KyIdentifiers, findsExtendedMacAddresses)
{
  EXPECT_EQ(identifiersOf("00:1b:21:ff:fe:3c:4d:5e"), "mac=00:1b:21:ff:fe:3c:4d:5e");
  EXPECT_EQ(identifiersOf("021b.21ff.fe3c.4d5e"), "mac=021b.21ff.fe3c.4d5e");
  EXPECT_EQ(identifiersOf("021b21fffe3c4d5e"), "mac=021b21fffe3c4d5e");
  EXPECT_EQ(identifiersOf("mac:0:1b:21:3c:4d:5e"), "mac=0:1b:21:3c:4d:5e");
  EXPECT_EQ(identifiersOf("021b21ffff3c4d5e"), "");
}

TEST(KyIdentifiers, extendedMacAddressesHoldMacAddresses)
{
  const std::string mac("\x00\x1B\x21\x3C\x4D\x5E", 6);
  EXPECT_EQ(extendedMac(mac), "\x02\x1B\x21\xFF\xFE\x3C\x4D\x5E");
  EXPECT_EQ(macOfExtended(extendedMac(mac)), mac);
  EXPECT_TRUE(isExtendedMac(extendedMac(mac)));
  EXPECT_FALSE(isExtendedMac(mac));
}

TEST(KyIdentifiers, findsMacAddressesWithoutLeadingZeros)
{
  EXPECT_EQ(identifiersOf("at 0:1b:21:3c:4d:5e on en0"), "mac=0:1b:21:3c:4d:5e");
  EXPECT_EQ(identifiersOf("a:b:c:d:e:f"), "mac=a:b:c:d:e:f");
  for (const char* text :
       {"0:1:2:3:4:5", "00:1b:21:3c:4d:5", "0:1b:21:3c:4d", "0:1b:21:3c:4d:5e:6", "0:1b:21:3c:4d:5ef"})
    EXPECT_EQ(identifiersOf(text), "") << text;
}

TEST(KyIdentifiers, findsWordsOfDigitsWithoutSeparators)
{
  EXPECT_EQ(identifiersOf("(001b213c4d5e)"), "mac=001b213c4d5e");
  EXPECT_EQ(identifiersOf("enx001b213c4d5e: wlx001B213C4D5F"), "mac=001b213c4d5e mac=001B213C4D5F");
  EXPECT_EQ(identifiersOf("4c4c4544004235108052B4C04F4A4E31."), "uuid=4c4c4544004235108052B4C04F4A4E31");
  for (const char* text :
       {"123456789012", "abcdefabcdef", "0x001b213c4d5e", "001b213c4d5e7", "x001b213c4d5e", "001b213c4d5g",
        "benx001b213c4d5e", "4c4c4544004235108052b4c04f4a4e31a", "4c4c4544004235108052b4c04f4a4e3"})
    EXPECT_EQ(identifiersOf(text), "") << text;
}

TEST(KyIdentifiers, takesNoChecksumOrVersionForDigitsOfAnAddress)
{
  for (const char* text :
       {"md5: 4c4c4544004235108052b4c04f4a4e31", "MD5SUM=4c4c4544004235108052b4c04f4a4e31", "crc 001b213c4d5e",
        "commit 001b213c4d5e", "git: 001b213c4d5e", "version \"001b213c4d5e\"", "FW 001b213c4d5e"})
    EXPECT_EQ(identifiersOf(text), "") << text;
  EXPECT_EQ(identifiersOf("001b213c4d5e", true), "");
  EXPECT_EQ(identifiersOf("legit 001b213c4d5e"), "mac=001b213c4d5e");
}

TEST(KyIdentifiers, findsIPv4AddressesButNotInVersionsAndLongerNumbers)
{
  EXPECT_EQ(identifiersOf("10.2.3.4"), "ipv4=10.2.3.4");
  EXPECT_EQ(identifiersOf("http://192.168.0.17:80/"), "ipv4=192.168.0.17");
  EXPECT_EQ(identifiersOf("from 10.0.0.1-10.0.0.9."), "ipv4=10.0.0.1 ipv4=10.0.0.9");
  EXPECT_EQ(identifiersOf("10.2.3.4", true), "");
  EXPECT_EQ(identifiersOf("00:1b:21:3c:4d:5e 10.2.3.4", true), "mac=00:1b:21:3c:4d:5e");
  for (const char* text :
       {"v10.2.3.4", "10.2.3", "10.2.3.256", "1.10.2.3.4", "10.2.3.4.5", "10.2.3.4a", "1000.2.3.4", "10..3.4"})
    EXPECT_EQ(identifiersOf(text), "") << text;
}

TEST(KyIdentifiers, findsIPv6AddressesInEveryForm)
{
  EXPECT_EQ(identifiersOf("fe80::21b:21ff:fe3c:4d5e%eth0"), "ipv6=fe80::21b:21ff:fe3c:4d5e");
  EXPECT_EQ(identifiersOf("[2001:470:1f0b::1]:443"), "ipv6=2001:470:1f0b::1");
  EXPECT_EQ(identifiersOf("2001:0470:0000:0000:0000:0000:0000:0001/64"),
            "ipv6=2001:0470:0000:0000:0000:0000:0000:0001");
  EXPECT_EQ(identifiersOf("::ffff:10.2.3.4"), "ipv6=::ffff:10.2.3.4");
  EXPECT_EQ(identifiersOf("at fe80::1: no"), "ipv6=fe80::1");
}

TEST(KyIdentifiers, findsUuids)
{
  EXPECT_EQ(identifiersOf("{4C4C4544-0042-3510-8052-B4C04F4A4E31}"), "uuid=4C4C4544-0042-3510-8052-B4C04F4A4E31");
  EXPECT_EQ(identifiersOf("4c4c4544-0042-3510-8052-b4c04f4a4e3"), "");
  EXPECT_EQ(identifiersOf("4c4c4544-0042-3510-8052-b4c04f4a4e311"), "");
}

TEST(KyIdentifiers, knowsWhatNamesNoMachine)
{
  EXPECT_EQ(
      identifiersOf("255.255.255.0 127.0.0.1 0.0.0.0 ::1 00:00:00:00:00:00 ff:ff:ff:ff:ff:ff"),
      "-ipv4=255.255.255.0 -ipv4=127.0.0.1 -ipv4=0.0.0.0 -ipv6=::1 -mac=00:00:00:00:00:00 -mac=ff:ff:ff:ff:ff:ff");
  EXPECT_EQ(identifiersOf("::ffff:127.0.0.1"), "-ipv6=::ffff:127.0.0.1");
  EXPECT_EQ(identifiersOf("00000000-0000-0000-0000-000000000000"), "-uuid=00000000-0000-0000-0000-000000000000");
}

TEST(KyIdentifiers, wordsBehindLabelsDoNotOverlapAndLieInTheText)
{
  std::mt19937 random(4711);
  constexpr const char* s_parts[] = {
      "sn", "S/N",  "serial", "number",           "no",   ".",        ":",  "=",  " ", "_", "#",   "(", ")",
      "\"", "AB12", "7",      "0:1b:21:3c:4d:5e", "uuid", "hostname", "\n", "\t", "-", "/", "\xFF"};
  for (int n = 0; n < 20000; ++n)
  {
    std::string text;
    for (auto parts = random() % 12; parts > 0; --parts)
      text += s_parts[random() % std::size(s_parts)];
    identifiersOf(text);
    std::size_t end = 0;
    for (const LabelledWord& word : labelledWords(text))
    {
      ASSERT_TRUE(word.begin >= end && word.length > 0 && word.begin + word.length <= text.size()) << text;
      end = word.begin + word.length;
    }
  }
}
