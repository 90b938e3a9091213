// A window with one control of each kind that records its events, and a second, empty window.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "runtime/Application.h"
#include "runtime/Buttons.h"
#include "runtime/Listbox.h"
#include "runtime/TextControls.h"
#include "runtime/Window.h"
#include "support/FakePlatform.h"

using Lines = std::vector<std::string>;

inline int formsAlive = 0, formsOpened = 0;

class Form : public Window {
 public:
  Form() : Window(Application::Current(), "Form", {"A form", 200, 100}) {
    Place({{button, "button", 1, 2, 3, 4, 0, "Go", {12, true}},
           {field, "field", 0, 0, 1, 1, 1, "start"},
           {list, "list", 0, 0, 1, 1},
           {area, "area", 0, 0, 1, 1},
           {label, "label", 0, 0, 1, 1}});
    box.Action = [this] { events.push_back("box " + std::to_string(box.Value())); };
    one.Action = [this] { events.push_back("one"); };
    two.Action = [this] { events.push_back("two"); };
    canvas.MouseDown = [this](int x, int y) {
      return events.push_back("canvas " + std::to_string(x) + " " + std::to_string(y)), true;
    };
    ++formsAlive;
  }
  ~Form() override { --formsAlive; }
  static Form& Get() { return GetOrMake<Form>("Form", Opening::AfterHandler); }
  using Window::AddMenuHandler;
  void Event_Open() override { events.push_back("open"), ++formsOpened; }
  void Event_Resizing() override {
    events.push_back(std::to_string(Width()) + "x" + std::to_string(Height()));
  }

  Lines events;
  PushButton button{*this};
  CheckBox box{*this};
  RadioButton one{*this}, two{*this};
  TextField field{*this};
  Listbox list{*this, {2, "", 0, 0, true}};
  Listbox single{*this, {}};
  TextArea area{*this};
  Label label{*this};
  Canvas canvas{*this};
};

class Other : public Window {
 public:
  Other() : Window(Application::Current(), "Other", {}) {}
  static Other& Get() { return GetOrMake<Other>("Other", Opening::AtOnce); }
  void Event_Open() override { ++formsOpened; }
};

class RecordingApplication : public Application {
 public:
  using Application::Application;
  Lines events;

 private:
  void Event_Close() override { events.push_back("close"); }
  void Event_CommandBegins() override { events.push_back("begins"); }
  std::string CommandOutcome(bool stopped) const override { return stopped ? "stopped" : "finished"; }
};

struct Run : testing::Test {
  FakePlatform host;
  RecordingApplication app{host};
  Lines steps;
};
