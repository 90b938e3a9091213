#include "runtime/TextControls.h"

#include <algorithm>

#include "runtime/Window.h"

namespace {

std::string OneLine(std::string text) {
  std::erase_if(text, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
  return text;
}

}  // namespace

void TextField::SetText(const std::string& text) {
  Set(text_, OneLine(text));
  SelStart = text_.size();
  SelLength = 0;
}

void TextField::UserTypes(const std::string& text) {
  if (!IsUsable()) return;
  Owner().RecordFocus(*this);
  undo_ = text_;
  SetText(text);
}

void TextField::UserEdits(EditAction action, std::string& clipboard) {
  if (!IsUsable()) return;
  const std::string selected = text_.substr(SelStart, SelLength);
  const bool takesSelection = action == EditAction::Cut || action == EditAction::Copy;
  if (takesSelection && !selected.empty()) clipboard = selected;
  if (action == EditAction::Cut || action == EditAction::Clear) PutOverSelection("");
  if (action == EditAction::Paste) UserPastes(clipboard);
  if (action == EditAction::Undo) UserTypes(std::string(undo_));
  if (action == EditAction::SelectAll) SelStart = 0, SelLength = text_.size();
}

void TextField::UserPastes(const std::string& text) {
  SelLength == text_.size() ? UserDrops(text) : PutOverSelection(text);
}

void TextField::PutOverSelection(const std::string& text) {
  const std::string put = OneLine(text);
  const std::size_t caret = SelStart + put.size();
  UserTypes(std::string(text_).replace(SelStart, SelLength, put));
  SelStart = std::min(caret, text_.size());
}

void TextArea::SetText(SharedText text) {
  if (*text == *text_) return;
  text_ = std::move(text);
  Changed();
}
