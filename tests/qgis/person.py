"""What a person does in QGIS's window, and what is waited for."""

import os
import time

from PyQt5.QtCore import QCoreApplication, QEventLoop, QPoint, Qt, QTimer
from PyQt5.QtTest import QTest
from PyQt5.QtWidgets import QAction, QApplication, QWidget
from qgis.utils import iface

PICTURES = os.environ.get("VLQGIS_PICTURES", "")
PATIENCE = 60  # seconds


class Astray(Exception):
    """Something is not there, or not as expected."""


def breathe(milliseconds=20):
    QCoreApplication.processEvents(QEventLoop.AllEvents, milliseconds)
    time.sleep(0.005)


def wait_for(what, condition, patience=PATIENCE):
    """Lets QGIS live until the condition holds. Its value is given back."""
    end = time.monotonic() + patience
    while time.monotonic() < end:
        breathe()
        value = condition()
        if value:
            return value
    raise Astray(f"never seen: {what}")


def expect(condition, otherwise):
    if not condition:
        raise Astray(otherwise)


def action(name):
    found = iface.mainWindow().findChild(QAction, "VLClientUI" + name)
    expect(found is not None, f"QGIS has no action {name}")
    return found


def find(kind, name, place=None):
    found = (place or iface.mainWindow()).findChild(kind, name)
    expect(found is not None, f"there is no {name}")
    return found


def picture(name, widget=None):
    if not PICTURES:
        return
    QCoreApplication.processEvents()
    os.makedirs(PICTURES, exist_ok=True)
    (widget or iface.mainWindow()).grab().save(os.path.join(PICTURES, name + ".png"))


def click(widget):
    expect(widget.isEnabled(), f"{widget.objectName()} cannot be clicked now")
    awaken(widget.window())
    QTest.mouseClick(widget, Qt.LeftButton, Qt.NoModifier, QPoint(min(10, widget.width() // 2), widget.height() // 2))


def awaken(window):
    """Nobody manages windows here: one that was under a modal window gets the keys back late, in the midst of a click."""
    end = time.monotonic() + 5
    while not window.isActiveWindow() and time.monotonic() < end:
        window.activateWindow()
        breathe()


def row_place(rows, name):
    names = [rows.model().index(row, 0).data() for row in range(rows.model().rowCount())]
    expect(name in names, f"the list has no {name}: {names}")
    index = rows.model().index(names.index(name), 0)
    rows.scrollTo(index)
    rectangle = rows.visualRect(index)
    return QPoint(rectangle.left() + min(rectangle.width() // 2, 60), rectangle.center().y())


def double_click_row(rows, name):
    place = row_place(rows, name)
    QTest.mouseClick(rows.viewport(), Qt.LeftButton, Qt.NoModifier, place)
    QTest.mouseDClick(rows.viewport(), Qt.LeftButton, Qt.NoModifier, place)


def choose(box, entry):
    row = box.findText(entry)
    expect(row >= 0, f"there is no entry {entry}")
    box.setFocus(Qt.TabFocusReason)
    QTest.keyClick(box, Qt.Key_F4)
    QTest.keyClick(box.view(), Qt.Key_Home)
    for _ in range(row):
        QTest.keyClick(box.view(), Qt.Key_Down)
    QTest.keyClick(box.view(), Qt.Key_Return)


class Watch:
    """Acts once a window is there, from the loop of that window. Acts that wait let others be watched meanwhile."""

    def __init__(self, what, window, act):
        self.problems = []
        self.what, self.window, self.act = what, window, act
        self.end = time.monotonic() + PATIENCE
        self.timer = QTimer()
        self.timer.timeout.connect(self.look)
        self.timer.start(50)

    def look(self):
        # Nobody else would close what stands there.
        if self.problems or time.monotonic() > self.end:
            self.problems = self.problems or [Astray(f"never seen: {self.what}")]
            if QApplication.activeModalWidget() is not None:
                QApplication.activeModalWidget().close()
            return
        window = self.window()
        if window is None or not window.isVisible():
            return
        self.timer.stop()
        try:
            self.act(window)
        except BaseException as problem:  # the loop of the window would swallow it
            self.problems.append(problem)
            self.timer.start(50)

    def finish(self):
        self.timer.stop()
        if self.problems:
            raise self.problems[0]


def in_modal_window(open_it, title, act):
    """Opens a modal window and acts on it once it is there. @param title: None for any window."""
    window = (lambda: modal_window(title)) if title else QApplication.activeModalWidget
    watch = Watch(title or "a window", window, act)
    open_it()
    watch.finish()


def modal_window(title):
    window = QApplication.activeModalWidget()
    if window is None or not window.isVisible():
        return None
    shown = window.windowTitle()
    return window if shown == title or shown.startswith(title + " \u2013 ") else None
