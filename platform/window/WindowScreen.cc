#include "platform/window/WindowScreen.h"

extern void qml_register_types_org_quorin_window();

namespace quorin {

WindowScreen::WindowScreen(UIApplication& application, const WindowLook& look)
    : _stack(application), _model(_stack), _appearance(look.dark, look.textScale) {
  // The linker would leave out what registers the QML types, since only data names it.
  void (*volatile const types)() = qml_register_types_org_quorin_window;
  (void)types;
  _engine.addImportPath("qrc:/");
  _engine.setInitialProperties({{"stack", QVariant::fromValue(&_model)},
                                {"appearance", QVariant::fromValue(&_appearance)},
                                {"width", look.size.width()},
                                {"height", look.size.height()}});
  _engine.load(QUrl("qrc:/org/quorin/window/Main.qml"));
}

QQuickWindow* WindowScreen::window() const {
  return _engine.rootObjects().isEmpty()
             ? nullptr
             : qobject_cast<QQuickWindow*>(_engine.rootObjects().constFirst());
}

}  // namespace quorin
