// SPDX-License-Identifier: MIT
// Copyright (c) 2026 The Shared authors

// Cases: families and handles; children by name; few and many attributes, in every order; trees
// that are visited without handles and by several threads, and such as are too deep and too wide to
// be released by recursion.

#include "shared/xml/XMLNode.h"

#include <gtest/gtest.h>

#include <random>
#include <thread>

#include "shared/xml/XMLScanner.h"

namespace shr {
namespace {

TEST(XMLNode, knowsItsFamily) {
  XMLNode::Handle root = XMLNode::Factory();
  EXPECT_TRUE(root->GetName().empty() && root->GetParent() == nullptr);
  XMLNode::Handle child = XMLNode::Factory(root);
  child->SetName("a");
  ASSERT_EQ(root->GetChildren().size(), 1u);
  EXPECT_EQ(root->GetChildren()[0], child);
  EXPECT_EQ(child->GetParent(), root);
  EXPECT_EQ(XMLNode::Factory("named")->GetName(), "named");
  const std::weak_ptr<XMLNode> watch = child;
  root.reset();
  EXPECT_EQ(child->GetParent(), nullptr);
  child.reset();
  EXPECT_TRUE(watch.expired());
}

TEST(XMLNode, findsChildrenByNameAndIndex) {
  const XMLNode::Handle root = XMLNode::Factory();
  for (const char* const name : {"item", "other", "item", "Item", "item"}) {
    const XMLNode::Handle child = XMLNode::Factory(root);
    child->SetName(name);
    child->SetValue(std::to_string(root->GetChildren().size()));
  }
  EXPECT_EQ(root->FindChild("item", 0)->GetValue(), "1");
  EXPECT_EQ(root->FindChild("item", 1)->GetValue(), "3");
  EXPECT_EQ(root->FindChild("item", 2)->GetValue(), "5");
  EXPECT_EQ(root->FindChild("item", 3), nullptr);
  EXPECT_EQ(root->FindChild("", 0), nullptr);
  root->Done();
  EXPECT_EQ(XMLNode::Factory(root)->GetParent(), root);
  EXPECT_EQ(root->GetChildren().size(), 6u);
}

TEST(XMLNode, keepsAttributesInOrder) {
  for (const int count : {0, 1, 15, 16, 17, 200}) {
    std::mt19937 random(1);
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) names.push_back("name" + std::to_string(i));
    std::shuffle(names.begin(), names.end(), random);
    const XMLNode::Handle node = XMLNode::Factory();
    std::map<std::string, std::string> expected;
    for (int pass = 0; pass < 2; ++pass) {  // the second pass replaces all values
      for (const std::string& name : names) {
        expected[name] = name + std::to_string(pass);
        node->SetAttribute(name, expected[name]);
      }
    }
    EXPECT_EQ(node->GetAttributes(), expected);
    EXPECT_EQ(node->GetAttributeCount(), expected.size());
    std::vector<std::string> order;
    node->ForEachAttribute(
        [&order](std::string_view name, std::string_view) { order.emplace_back(name); });
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    for (const auto& [name, value] : expected) EXPECT_EQ(node->GetAttribute(name), value);
    EXPECT_FALSE(node->HasAttribute("name"));
    EXPECT_EQ(node->GetAttribute("zzz"), "");
  }
}

/// Returns a tree with handles to its root alone: 8 children with 8 children each.
XMLNode::Handle ScannedTree() {
  std::string text;
  for (int i = 0; i < 8; ++i) text += "<a><b/><b/><b/><b/><b/><b/><b/><b n=\"8\"/></a>";
  return XMLScanner().ScanText(text, L"tree");
}

TEST(XMLNode, isVisitedWithoutHandles) {
  const XMLNode::Handle root = ScannedTree();
  std::string last;
  int count = 0;
  root->ForEachChild([&](const XMLNode& a) {
    a.ForEachChild([&](const XMLNode& b) {
      ++count;
      last = b.GetAttribute("n");
    });
  });
  EXPECT_EQ(count, 64);
  EXPECT_EQ(last, "8");
  // A visited node has no handle; those from the root down to it are made when it is asked for one.
  root->ForEachChild([&root](const XMLNode& a) {
    a.ForEachChild([&](const XMLNode& b) {
      EXPECT_EQ(b.GetParent().get(), &a);
      EXPECT_EQ(b.GetParent()->GetParent(), root);
    });
  });
  XMLNode::Factory("leaf")->ForEachChild([](const XMLNode&) { ADD_FAILURE(); });
}

TEST(XMLNode, makesTheSameHandlesInAllThreads) {
  for (int round = 0; round < 50; ++round) {
    const XMLNode::Handle root = ScannedTree();
    std::vector<XMLNode::Handle> found[3];
    const auto walk = [&root](std::vector<XMLNode::Handle>& all) {
      for (const XMLNode::Handle& a : root->GetChildren()) {
        for (const XMLNode::Handle& b : a->GetChildren()) all.push_back(b);
      }
    };
    std::thread threads[] = {std::thread(walk, std::ref(found[0])),
                             std::thread(walk, std::ref(found[1])),
                             std::thread(walk, std::ref(found[2]))};
    for (std::thread& thread : threads) thread.join();
    ASSERT_EQ(found[0].size(), 64u);
    ASSERT_TRUE(found[0] == found[1] && found[1] == found[2]);
  }
}

TEST(XMLNode, setsAndAppendsText) {
  const XMLNode::Handle node = XMLNode::Factory("n");
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    expected += std::to_string(i);
    node->AppendValue(std::to_string(i));
    if (i % 100 == 0) XMLNode::Factory(node)->SetName(expected);
  }
  EXPECT_EQ(node->GetValue(), expected);
  node->AppendValue(node->GetValue());
  EXPECT_EQ(node->GetValue(), expected + expected);
  node->SetValue(node->GetValue().substr(1, 5));
  EXPECT_EQ(node->GetValue(), expected.substr(1, 5));
  EXPECT_EQ(node->GetChildren()[1]->GetName().substr(0, 4), "0123");
  node->SetValue("");
  EXPECT_EQ(node->GetValue(), "");
}

TEST(XMLNode, releasesAnyTreeWithoutRecursion) {
  constexpr int COUNT = 200000;
  XMLNode::Handle root = XMLNode::Factory();
  XMLNode::Handle deepest = root;
  for (int i = 0; i < COUNT; ++i) deepest = XMLNode::Factory(deepest);
  // A handle into the middle keeps what hangs on it, and no more.
  XMLNode::Handle middle = deepest->GetParent();
  const std::weak_ptr<XMLNode> top = root;
  root.reset();
  EXPECT_TRUE(top.expired());
  EXPECT_EQ(middle->GetParent(), nullptr);
  EXPECT_EQ(middle->GetChildren()[0], deepest);
  middle.reset();
  EXPECT_EQ(deepest->GetParent(), nullptr);
  root = XMLNode::Factory();
  for (int i = 0; i < COUNT / 8; ++i) XMLNode::Factory(XMLNode::Factory(root));
  root.reset();
}

}  // namespace
}  // namespace shr
