// The component's host on Qt: lets it process the application's pending
// events during long operations and forwards its events to the panels.
#ifndef TOLVA_QT_GUI_GUI_HOST_H_
#define TOLVA_QT_GUI_GUI_HOST_H_

#include <QCoreApplication>

#include <functional>
#include <string>

#include "tolva/events.h"
#include "tolva/host_container.h"

namespace tolva::gui {

class GuiHost : public HostContainer, public Tolva2011RegisterEvents {
 public:
  void DoEvents() override { QCoreApplication::processEvents(); }
  void FTPSessionGetProgress(std::string& file, Long& done, Long& total) override {
    if (on_progress) on_progress(file, done, total);
  }
  std::function<void(const std::string&, Long, Long)> on_progress;
};

}  // namespace tolva::gui

#endif  // TOLVA_QT_GUI_GUI_HOST_H_
