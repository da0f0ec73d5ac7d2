// KyToolTest.h: runs the command-line tool as a program, in a folder of its own.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "inventory/KyInventoryTree.h"
#include "support/KyFiles.h"
#include "support/KySampleTree.h"
#include "support/KyTestPool.h"

// The tool of this build.
extern const char* const kyToolPath;

struct Outcome
{
  int exitCode;
  std::string out;
  std::string err;
};

class Tool : public ::testing::Test
{
protected:
  std::string path(const std::string& name) const { return m_folder.path(name); }

  // Runs the tool; `arguments` is shell text.
  Outcome run(const std::string& arguments) const
  {
    const std::string out = m_folder.write("stdout.txt", "");    // there, too, where the arguments redirect elsewhere
    const std::string err = m_folder.write("stderr.txt", "");
    const std::string command = std::string(kyToolPath) + " " + arguments + " >" + out + " 2>" + err + " </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentOf(out), contentOf(err)};
  }

  void write(const std::string& name, const std::string& bytes) const { m_folder.write(name, bytes); }

  // Two boards; the first has a channel. Stored in `name`.
  std::string storeSample(const std::string& name) const
  {
    using namespace KyNInventoryIDs;
    KyTestPool pool;
    KyCInventoryItem root(pool, ROOT, "ROOT");
    root.createParameter(pool, BOARD / NAME, KyCString("100%s <fast>"), nullptr, false, 0);
    root.createParameter(pool, BOARD / IOCHANNEL[3] / VOLTAGE_MAX, 10.5, "V", true, 1);
    root.createParameter(pool, BOARD[2] / SLOT_COUNT, 4u, nullptr, false, 0);
    KyCBuffer buffer(pool);
    KyCInventoryData::generateInventorySection(pool, buffer, &root);
    const std::string bytes(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition());
    write(name, bytes);
    return bytes;
  }

  // Stores the tree that a sample text describes; gives the file's path.
  std::string store(const std::string& name, const std::string& text) const
  {
    KyTestPool pool;
    KySampleTree sample(text);
    KyCBuffer buffer(pool);
    KyCInventoryData::generateInventorySection(pool, buffer, &sample.root());
    return m_folder.write(name,
                          std::string(reinterpret_cast<const char*>(buffer.getStorage()), buffer.getWritePosition()));
  }

  // How the tree of a file differs from what a sample text describes; empty when it does not.
  std::string difference(const std::string& name, const std::string& text) const
  {
    KyTestPool pool;
    KyCInventoryItem* root = nullptr;
    KyCInventoryData::extractInventoryTreeFromFile(pool, path(name).c_str(), root);
    const std::unique_ptr<KyCInventoryItem> tree(root);
    return tree == nullptr ? "no tree" : KyTreeDifference(*tree, KySampleTree(text).root());
  }

  KyTemporaryFolder m_folder;
};
