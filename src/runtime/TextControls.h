// The controls that hold a text. Texts are bytes, taken to be UTF-8.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

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

// One line of any length: line breaks and NULs in what is put into it are dropped.
class TextField : public Control {
 public:
  explicit TextField(Window& owner) : Control(owner, ControlKind::TextField) {}
  const std::string& Text() const { return text_; }
  void SetText(const std::string& text);
  // The person puts text in place of what stood there; the focus is here then.
  void PersonTypes(const std::string& text);

  // What becomes of a text that arrives as the whole of the field, pasted or dropped; where it is empty,
  // nothing.
  std::function<std::string(const std::string&)> Arriving;
  // The user pastes text over the selection; over all of it, or into an empty field, it arrives as a whole.
  void PersonPastes(const std::string& text);
  // A whole text arrives: dropped, or handed over to the program.
  void PersonDrops(const std::string& text) { PersonTypes(Arriving ? Arriving(text) : text); }

  // The selection, in bytes from 0, kept inside the text; and one step of undoing. They serve
  // the editing commands where no screen has a field of its own.
  std::size_t SelStart = 0;
  std::size_t SelLength = 0;
  void PersonEdits(EditAction action, std::string& clipboard);

 private:
  void TakeInitialText(const std::string& text) override { text_ = text; }
  void PutOverSelection(const std::string& text);
  std::string text_;
  std::string undo_;
};

// A text that several may hold and nobody changes; never nullptr.
using SharedText = std::shared_ptr<const std::string>;

// One text buffer of any size.
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
