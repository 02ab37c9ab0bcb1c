#include "platform/documents/qpdf/page_content.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

namespace tolvane {

namespace {

using Box = PageGeometry::Box;
using Matrix = PageContent::Matrix;

constexpr double halfPixel = 0.25;  // points

/// Lines, colors, text positions, marks, and the end of a path that is not painted.
bool paintsNothing(std::string_view operation) {
  static const std::set<std::string_view> operations = {
      "w",  "J",  "j",  "M",  "d",  "ri", "i",  "g",  "G",  "rg", "RG",  "k",
      "K",  "cs", "CS", "sc", "SC", "BT", "ET", "Tc", "Tw", "Tz", "TL",  "Tf",
      "Ts", "Td", "TD", "Tm", "T*", "MP", "DP", "W",  "W*", "n",  "BMC", "EMC"};
  return operations.contains(operation);
}

bool showsText(std::string_view operation) {
  return operation == "Tj" || operation == "TJ" || operation == "'" || operation == "\"";
}

/// `first`, then `second`.
Matrix product(const Matrix& first, const Matrix& second) {
  return {first[0] * second[0] + first[1] * second[2],
          first[0] * second[1] + first[1] * second[3],
          first[2] * second[0] + first[3] * second[2],
          first[2] * second[1] + first[3] * second[3],
          first[4] * second[0] + first[5] * second[2] + second[4],
          first[4] * second[1] + first[5] * second[3] + second[5]};
}

bool isAbsentOr(QPDFObjectHandle value, const char* name) {
  return value.isNull() || value.isNameAndEquals(name);
}

bool isAbsentOrOne(QPDFObjectHandle value) {
  return value.isNull() || (value.isNumber() && value.getNumericValue() == 1);
}

}  // namespace

bool covers(const Box& area, const Box& other) {
  return area[0] <= other[0] + halfPixel && area[1] <= other[1] + halfPixel &&
         area[2] >= other[2] - halfPixel && area[3] >= other[3] - halfPixel;
}

PageContent::PageContent(QPDFObjectHandle resources, const Box& page)
    : resources_(std::move(resources)), page_(page) {}

void PageContent::handleObject(QPDFObjectHandle object) {
  if (!object.isOperator()) {
    operands_.push_back(std::move(object));
    return;
  }
  const std::string operation = object.getOperatorValue();
  if (!follow(operation)) {
    terminateParsing();
  }
  operands_.clear();
}

std::optional<PageContent::Picture> PageContent::onlyPicture() const {
  return isComplete_ ? picture_ : std::nullopt;
}

bool PageContent::follow(const std::string& operation) {
  if (operation == "Do") {
    return show();
  }
  if (operation == "re") {
    return outlinesPage();
  }
  if (operation == "BDC") {  // optional content may be hidden
    return !operands_.empty() && !operands_.front().isNameAndEquals("/OC");
  }
  if (showsText(operation)) {
    return !state_.paintsText;
  }
  return paintsNothing(operation) || followState(operation);
}

bool PageContent::followState(const std::string& operation) {
  if (operation == "q") {
    saved_.push_back(state_);
    return true;
  }
  if (operation == "Q") {
    return restore();
  }
  if (operation == "cm") {
    return transform();
  }
  if (operation == "gs") {
    return appliesPlainState();
  }
  if (operation == "Tr") {
    constexpr double invisible = 3;
    const auto mode = numbers(1);
    state_.paintsText = !mode || mode->front() != invisible;
    return mode.has_value();
  }
  return false;
}

bool PageContent::restore() {
  if (saved_.empty()) {
    return false;
  }
  state_ = saved_.back();
  saved_.pop_back();
  return true;
}

bool PageContent::transform() {
  const auto operands = numbers(6);
  if (!operands) {
    return false;
  }
  Matrix change{};
  std::copy(operands->begin(), operands->end(), change.begin());
  state_.matrix = product(change, state_.matrix);
  return true;
}

bool PageContent::show() {
  const Matrix& matrix = state_.matrix;
  const bool isUpright = matrix[0] > 0 && matrix[1] == 0 && matrix[2] == 0 && matrix[3] > 0;
  QPDFObjectHandle object = resource("/XObject");
  if (picture_ || !isUpright || !object.isImage()) {
    return false;
  }
  picture_ = {std::move(object),
              {matrix[4], matrix[5], matrix[4] + matrix[0], matrix[5] + matrix[3]}};
  return true;
}

bool PageContent::appliesPlainState() {
  QPDFObjectHandle state = resource("/ExtGState");
  if (!state.isDictionary()) {
    return false;
  }
  return isAbsentOrOne(state.getKey("/ca")) && isAbsentOr(state.getKey("/BM"), "/Normal") &&
         isAbsentOr(state.getKey("/SMask"), "/None") &&
         isAbsentOr(state.getKey("/TR"), "/Identity") &&
         isAbsentOr(state.getKey("/TR2"), "/Default");
}

bool PageContent::outlinesPage() const {
  const auto operands = numbers(4);
  if (!operands) {
    return false;
  }
  const auto& [x, y, width, height] =
      std::array<double, 4>{(*operands)[0], (*operands)[1], (*operands)[2], (*operands)[3]};
  const Matrix corners = product({width, 0, 0, height, x, y}, state_.matrix);
  const auto [left, right] = std::minmax({corners[4], corners[4] + corners[0]});
  const auto [bottom, top] = std::minmax({corners[5], corners[5] + corners[3]});
  return corners[1] == 0 && corners[2] == 0 && covers({left, bottom, right, top}, page_);
}

std::optional<std::vector<double>> PageContent::numbers(std::size_t count) const {
  if (operands_.size() != count) {
    return std::nullopt;
  }
  std::vector<double> values;
  for (QPDFObjectHandle operand : operands_) {
    if (!operand.isNumber()) {
      return std::nullopt;
    }
    values.push_back(operand.getNumericValue());
  }
  return values;
}

QPDFObjectHandle PageContent::resource(const char* kind) {
  if (operands_.size() != 1 || !operands_.front().isName()) {
    return QPDFObjectHandle::newNull();
  }
  QPDFObjectHandle entries =
      resources_.isDictionary() ? resources_.getKey(kind) : QPDFObjectHandle::newNull();
  return entries.isDictionary() ? entries.getKey(operands_.front().getName())
                                : QPDFObjectHandle::newNull();
}

}  // namespace tolvane
