#include "tools/import/yaml_tree.h"

#include <algorithm>
#include <sstream>
#include <yaml-cpp/depthguard.h>
#include <yaml-cpp/eventhandler.h>
#include <yaml-cpp/parser.h>

namespace varpre {
namespace {

Place place_of_mark(const Input& file, const YAML::Mark& mark, std::size_t width = 1) {
  if (mark.is_null()) return {&file};
  return {&file, mark.line + 1, mark.column + 1, static_cast<int>(std::max<std::size_t>(width, 1))};
}

// Why a text is refused that is YAML.
struct Refused {
  Place place;
  std::string reason;
};

class TreeBuilder : public YAML::EventHandler {
 public:
  TreeBuilder(const Input& file, YamlTree& tree) : file_(file), tree_(tree) {}

  int documents() const { return documents_; }

  void OnDocumentStart(const YAML::Mark&) override { ++documents_; }
  void OnDocumentEnd() override {}
  void OnNull(const YAML::Mark& mark, YAML::anchor_t anchor) override {
    take(add(YamlNode::Kind::null, mark, anchor));
  }
  void OnAlias(const YAML::Mark& mark, YAML::anchor_t anchor) override {
    const YamlNode* const node = anchor < anchored_.size() ? anchored_[anchor] : nullptr;
    if (node == nullptr || std::find(open_.begin(), open_.end(), node) != open_.end())
      throw Refused{place_of_mark(file_, mark), "an alias stands within what it stands for"};
    take(*node);
  }
  void OnScalar(const YAML::Mark& mark, const std::string&, YAML::anchor_t anchor,
                const std::string& value) override {
    constexpr std::size_t longest = 65536;
    if (value.size() > longest) {
      throw Refused{{&file_},
                    message("the text that begins in line ", mark.line + 1, " has more than ",
                            static_cast<int>(longest), " characters")};
    }
    YamlNode& node = add(YamlNode::Kind::scalar, mark, anchor, value.size());
    node.text = value;
    take(node);
  }
  void OnSequenceStart(const YAML::Mark& mark, const std::string&, YAML::anchor_t anchor,
                       YAML::EmitterStyle::value) override {
    begin(add(YamlNode::Kind::list, mark, anchor));
  }
  void OnSequenceEnd() override { end(); }
  void OnMapStart(const YAML::Mark& mark, const std::string&, YAML::anchor_t anchor,
                  YAML::EmitterStyle::value) override {
    begin(add(YamlNode::Kind::map, mark, anchor));
  }
  void OnMapEnd() override { end(); }

 private:
  YamlNode& add(YamlNode::Kind kind, const YAML::Mark& mark, YAML::anchor_t anchor, std::size_t width = 1) {
    YamlNode& node = tree_.nodes.emplace_back();
    node.kind = kind;
    node.place = place_of_mark(file_, mark, width);
    if (anchor > 0) {
      anchored_.resize(std::max(anchored_.size(), anchor + 1));
      anchored_[anchor] = &node;
    }
    return node;
  }

  void begin(YamlNode& node) {
    open_.push_back(&node);
    names_.push_back(nullptr);
  }

  void end() {
    const YamlNode& node = *open_.back();
    open_.pop_back();
    names_.pop_back();
    take(node);
  }

  // Adds a complete value to the list or mapping that it stands in.
  void take(const YamlNode& node) {
    if (open_.empty()) {
      tree_.root = &node;
      return;
    }
    YamlNode& outer = *open_.back();
    outer.size += node.size;
    if (outer.kind == YamlNode::Kind::list) {
      outer.items.push_back(&node);
    } else if (names_.back() == nullptr) {
      names_.back() = &node;
    } else {
      outer.members.emplace_back(names_.back(), &node);
      names_.back() = nullptr;
    }
    constexpr double usual = 100000;
    if (outer.size > 10 * static_cast<double>(tree_.nodes.size()) + usual)
      throw Refused{outer.place, "aliases stand for far more here than the file holds"};
  }

  const Input& file_;
  YamlTree& tree_;
  int documents_ = 0;
  std::vector<const YamlNode*> anchored_;  // by anchor
  std::vector<YamlNode*> open_;            // lists and mappings that have begun
  std::vector<const YamlNode*> names_;     // of the member that comes next in each
};

}  // namespace

const YamlNode* YamlNode::member(std::string_view name) const {
  const auto found =
      std::find_if(members.begin(), members.end(), [&](const auto& one) { return one.first->text == name; });
  return found == members.end() ? nullptr : found->second;
}

YamlTree read_yaml_tree(const Input& file, Findings& findings) {
  YamlTree tree;
  bool read = false;
  try {
    TreeBuilder builder(file, tree);
    std::istringstream stream(file.text);
    YAML::Parser parser(stream);
    // One document: what follows is not even looked at.
    while (builder.documents() < 2 && parser.HandleNextDocument(builder)) continue;
    read = builder.documents() == 1 && tree.root->kind == YamlNode::Kind::map;
    if (!read) findings.error({&file}, "the file is no mapping of sections");
  } catch (const Refused& refused) {
    findings.error(refused.place, refused.reason);
  } catch (const YAML::DeepRecursion& error) {
    findings.error(place_of_mark(file, error.mark), "this is nested too deeply");
  } catch (const YAML::Exception& error) {
    findings.error(place_of_mark(file, error.mark), message("this is no YAML: ", error.msg));
  }
  if (!read) tree.root = nullptr;
  return tree;
}

}  // namespace varpre
