// KitNoMemoryTest.cpp: what the kit and the host library do while each of their allocations fails. They work with the C++
// library's containers: std::bad_alloc leaves every operation; what they ask of the inventory library is reported.
#include <gtest/gtest.h>

#include <cstdio>

#include "faults/KyScenario.h"
#include "inventorykit/KyInventoryKit.h"

using namespace KyNInventoryIDs;
using namespace KyNInventoryKit;

namespace
{
constexpr auto NOTHING_MORE = KyScenario::NOTHING_MORE;
constexpr auto MAY_THROW = KyScenario::MAY_THROW;
constexpr auto MAY_THROW_FOR_ANY = KyScenario::MAY_THROW_FOR_ANY;

std::string bytesOf(const KyScene& scene)
{
  return std::string(reinterpret_cast<const char*>(scene.stored()), scene.storedSize());
}

// The sample's export in a format, made without failure.
const std::string& exported(KyScene& scene, Format format)
{
  static std::string texts[4];
  std::string& text = texts[static_cast<int>(format)];
  if (text.empty()) exportTree(scene.quiet, *scene.tree, format, text);
  return text;
}

bool exports(KyScene& scene, Format format) { return exportTree(scene.pool, *scene.tree, format, scene.result); }

bool imports(KyScene& scene, Format format)
{
  scene.made = importTree(scene.pool, exported(scene, format), format);
  return scene.made != nullptr;
}

const std::string& differenceText(KyScene& scene)
{
  static const std::string text = differenceToJson(compareTrees(*scene.tree, *scene.other));
  return text;
}

bool patches(KyScene& scene, PatchDirection direction)
{
  TreePointer& tree = direction == PatchDirection::FORWARD ? scene.tree : scene.other;
  Patch patch;
  if (!readPatch(scene.pool, differenceText(scene), "a patch", patch)) return false;
  return applyPatch(scene.pool, tree, patch, direction);
}

const KyScenario s_kit[] = {
    {"readAddress and addressText", MAY_THROW,
     [](KyScene& scene)
     {
       if (!readAddress(scene.pool, "BOARD[2]/IOCHANNEL/NAME", scene.address)) return false;
       scene.result = addressText(scene.address);
       return true;
     }},
    {"nearestNames", MAY_THROW,
     [](KyScene& scene)
     {
       for (const std::string& name : nearestNames("BOARDD", 5))
         scene.result += name;
       return true;
     }},
    {"find", MAY_THROW,
     [](KyScene& scene)
     {
       Query query;
       if (!readPattern(scene.pool, "**/NAME", query) || !readCondition(scene.pool, ". ~ \"text\"", query))
         return false;
       for (const Node& node : find(*scene.tree, query))
         scene.result += addressText(node.parameter->getAddress());
       return true;
     }},
    {"changeParameter", MAY_THROW,
     [](KyScene& scene)
     {
       ParameterChange change;
       change.value = "another text of more than six characters";
       change.unit = "another unit of more than six";
       change.relevance = 9;
       return changeParameter(scene.pool, *scene.tree, BOARD / NAME, change) != nullptr;
     }},
    {"changeParameter that creates", MAY_THROW,
     [](KyScene& scene)
     {
       ParameterChange change;
       change.value = "1.2.3.4";
       change.createType = typeOfName("Version");
       return changeParameter(scene.pool, *scene.tree, BOARD[8] / IOCHANNEL / VERSION, change) != nullptr;
     }},
    {"removeNodes", MAY_THROW,
     [](KyScene& scene) {
       return removeNodes(scene.pool, *scene.tree, {BOARD / NAME, DEVICE}, Ambiguity::REFUSED);
     }},
    {"renameItem", NOTHING_MORE, [](KyScene& scene) { return renameItem(scene.pool, *scene.tree, BOARD, BOARD[7]); }},
    {"compareTrees", MAY_THROW,
     [](KyScene& scene)
     {
       const Difference difference = compareTrees(*scene.tree, *scene.other);
       for (const Change& change : difference.changes())
         scene.result += changeText(change) + difference.addressOf(change);
       scene.result += differenceToJson(difference);
       return true;
     }},
    {"applyPatch", MAY_THROW_FOR_ANY, [](KyScene& scene) { return patches(scene, PatchDirection::FORWARD); }},
    {"applyPatch in reverse", MAY_THROW_FOR_ANY,
     [](KyScene& scene) { return patches(scene, PatchDirection::REVERSE); }},
    {"export JSON", MAY_THROW, [](KyScene& scene) { return exports(scene, Format::JSON); }},
    {"export JSON lines", MAY_THROW, [](KyScene& scene) { return exports(scene, Format::JSON_LINES); }},
    {"export CSV", MAY_THROW, [](KyScene& scene) { return exports(scene, Format::CSV); }},
    {"export mark-up", MAY_THROW, [](KyScene& scene) { return exports(scene, Format::MARKUP); }},
    {"import JSON", MAY_THROW, [](KyScene& scene) { return imports(scene, Format::JSON); }},
    {"import JSON lines", MAY_THROW, [](KyScene& scene) { return imports(scene, Format::JSON_LINES); }},
    {"anonymizedTree", MAY_THROW,
     [](KyScene& scene)
     {
       scene.made = anonymizedTree(scene.pool, *scene.tree, "a key");
       return scene.made != nullptr;
     }},
    {"anonymizedTree of a tree with something to hide", MAY_THROW,
     [](KyScene& scene)
     {
       static const TreePointer personal = [&scene]
       {
         TreePointer tree(new KyCInventoryItem(scene.quiet, ROOT, "ROOT"));
         tree->createParameter<KyCString>(scene.quiet, BOARD / SERIAL_NUMBER, KyCString("4711-0815-4711"), "", false,
                                          0);
         tree->createParameter<KyCString>(scene.quiet, BOARD / NAME, KyCString("board 4711-0815-4711"), "", false, 0);
         tree->createParameter<unsigned long long>(scene.quiet, BOARD[2] / SERIAL_NUMBER, 47110815ull, "", false, 0);
         return tree;
       }();
       scene.made = anonymizedTree(scene.pool, *personal, "a key");
       return scene.made != nullptr;
     }},
    {"checkBytes", MAY_THROW_FOR_ANY,
     [](KyScene& scene)
     {
       const CheckResult result = checkBytes(bytesOf(scene), "a file", CheckOptions());
       scene.result = checkAsJson({result});
       return result.verdict == Verdict::FINE || result.verdict == Verdict::FINDINGS;
     }},
    {"checkBytes of what is to be warned of", MAY_THROW_FOR_ANY,
     [](KyScene& scene)
     {
       static const std::string bytes = [&scene]
       {
         scene.root().getItem(SHARED_DATA[3])->setID(SHARED_DATA[4]);
         return sectionOf(scene.quiet, scene.root());
       }();
       const CheckResult result = checkBytes(bytes, "a file", CheckOptions());
       scene.result = checkAsJson({result});
       return result.verdict == Verdict::FINDINGS;
     }},
    {"inspectBytes and annotateBytes", MAY_THROW,
     [](KyScene& scene)
     {
       Inspection inspection;
       if (!inspectBytes(scene.pool, bytesOf(scene), "a file", SectionEnd::READ, inspection)) return false;
       scene.result = inspectionAsJson(inspection);
       return annotateBytes(scene.pool, bytesOf(scene), "a file", SectionEnd::READ,
                            [&scene](const ByteNote& note)
                            {
                              scene.result += noteAsJson(note);
                              return true;
                            });
     }},
    {"appendSection, extractSection and stripSection", MAY_THROW,
     [](KyScene& scene)
     {
       std::string image(1000, 'x');
       if (!appendSection(scene.pool, image, "an image", bytesOf(scene), SectionEnd::END, Replace::NO)) return false;
       if (!extractSection(scene.pool, image, "an image", SectionEnd::END, scene.result)) return false;
       return stripSection(scene.pool, image, "an image", SectionEnd::END);
     }},
    {"readTreeFromBytes and sectionOf", MAY_THROW,
     [](KyScene& scene)
     {
       scene.made = readTreeFromBytes(scene.pool, bytesOf(scene), "a file");
       if (scene.made == nullptr) return false;
       scene.result = sectionOf(scene.pool, *scene.made);
       return !scene.result.empty();
     }},
    {"explainText", NOTHING_MORE,
     [](KyScene& scene)
     {
       Explanation explanation;
       return explainText(scene.pool, "0x1300801", explanation);
     }},
    {"completeAddress", MAY_THROW,
     [](KyScene& scene)
     {
       for (const std::string& word : completeAddress(*scene.tree, "BOARD/VOL"))
         scene.result += word;
       return true;
     }},
    {"splitCommands", MAY_THROW,
     [](KyScene& scene)
     {
       std::vector<std::vector<std::string>> commands;
       return splitCommands(scene.pool, "get 'a b'; set \"c\" d\\ e\nls a/long/address", commands);
     }},
    {"valueText and setValueText", MAY_THROW,
     [](KyScene& scene)
     {
       KyCInventoryParameter& parameter = *scene.board().getParameter(NAME);
       scene.result = valueText(parameter) + jsonValueText(parameter);
       return setValueText(scene.pool, parameter, "another text of more than six");
     }},
};

// Files: in a folder of the test's own.
std::string filePath(const char* name)
{
  static const std::string folder = []
  {
    std::string pattern = ::testing::TempDir() + "ky-no-memory-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) ADD_FAILURE() << "no folder";
    return pattern;
  }();
  return folder + "/" + name;
}

const KyScenario s_kitFiles[] = {
    {"writeTree and readTree", MAY_THROW,
     [](KyScene& scene)
     {
       const std::string path = filePath("tree.kyinv");
       if (!writeTree(scene.pool, path, *scene.tree, Overwrite::YES)) return false;
       scene.made = readTree(scene.pool, path);
       return scene.made != nullptr;
     }},
    {"replaceTree", MAY_THROW,
     [](KyScene& scene) { return replaceTree(scene.pool, filePath("tree.kyinv"), *scene.other); }},
    {"inspectFile and checkFile", MAY_THROW_FOR_ANY,
     [](KyScene& scene)
     {
       Inspection inspection;
       if (!inspectFile(scene.pool, filePath("tree.kyinv"), SectionEnd::READ, inspection)) return false;
       scene.result = inspectionAsJson(inspection);
       const CheckResult result = checkFile(filePath("tree.kyinv"), CheckOptions());
       scene.result += checkAsJson({result});
       return result.verdict == Verdict::FINE || result.verdict == Verdict::FINDINGS;
     }},
    {"Session", MAY_THROW,
     [](KyScene& scene)
     {
       static unsigned int value = 0;
       const std::unique_ptr<Session> session = Session::open(scene.pool, filePath("tree.kyinv"));
       if (session == nullptr) return false;
       if (!session->enter(scene.pool, "BOARD") || !session->set(scene.pool, "SIZE", std::to_string(++value % 1000)))
         return false;
       return session->save(scene.pool, Session::Others::KEEP);
     }},
};

}    // namespace

TEST(KitNoMemory, trees) { kyRunAll(s_kit); }
TEST(KitNoMemory, files)
{
  kyRunAll(s_kitFiles);
  std::remove(filePath("tree.kyinv").c_str());
  EXPECT_EQ(std::remove(filePath("").c_str()), 0) << "something stays in the folder";
}
