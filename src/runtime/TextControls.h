// Controls that hold a text. Texts are bytes, read as UTF-8.
#pragma once

#include <functional>
#include <memory>

#include "runtime/Control.h"
#include "runtime/Platform.h"

class Label : public Control {
 public:
  explicit Label(Window& owner) : Control(owner, ControlKind::Label) {}
  const std::string& Text() const { return text_; }
  void SetText(const std::string& text) { Set(text_, text); }

 private:
  void TakeInitialText(const std::string& text) override { text_ = text; }
  std::string text_;
};

// One line of any length: line breaks and NULs are dropped.
class TextField : public Control {
 public:
  explicit TextField(Window& owner) : Control(owner, ControlKind::TextField) {}
  const std::string& Text() const { return text_; }
  void SetText(const std::string& text);
  // The user replaces the whole text. Takes the focus.
  void UserTypes(const std::string& text);

  // Converts a text that is to fill the whole field, pasted or dropped; may be empty.
  std::function<std::string(const std::string&)> Arriving;
  // The user pastes text over the selection. It passes through Arriving if it replaces everything.
  void UserPastes(const std::string& text);
  // The user drops a text on the field, or starts the program with one: it passes through Arriving.
  void UserDrops(const std::string& text) { UserTypes(Arriving ? Arriving(text) : text); }

  // The selection, in bytes from 0 and within the text, and the editing commands with one level of undo, for
  // hosts without a screen.
  std::size_t SelStart = 0;
  std::size_t SelLength = 0;
  void UserEdits(EditAction action, std::string& clipboard);

 private:
  void TakeInitialText(const std::string& text) override { text_ = text; }
  void PutOverSelection(const std::string& text);
  std::string text_;
  std::string undo_;
};

// A shared text that is never changed and never nullptr.
using SharedText = std::shared_ptr<const std::string>;

// A text of any size.
class TextArea : public Control {
 public:
  explicit TextArea(Window& owner) : Control(owner, ControlKind::TextArea) {}
  const std::string& Text() const { return *text_; }
  void SetText(SharedText text);
  void SetText(std::string text) { SetText(std::make_shared<std::string>(std::move(text))); }

 private:
  void TakeInitialText(const std::string& text) override { text_ = std::make_shared<std::string>(text); }
  SharedText text_ = std::make_shared<std::string>();
};
