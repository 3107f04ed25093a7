import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import "qrc:/OstrelStyle" as Ostrel

Item {
    id: root

    // Keys that the focused control has left to others.
    property int presses: 0
    property int releases: 0
    Keys.onPressed: ++presses
    Keys.onReleased: ++releases

    width: 400; height: 300

    Action { id: action }
    Ostrel.Button { id: button; x: 10; y: 10; text: "Go"; background_color: "#111111" }
    Button { id: withAction; x: 150; y: 10; action: action }
    CheckBox { id: checkBox; x: 10; y: 60; text: "Check" }
    RadioButton { id: radio; x: 10; y: 100; text: "One" }
    RadioButton { id: otherRadio; x: 150; y: 100; text: "Other"; checked: true }
    Label { id: label; x: 10; y: 150; text: "text <a href='link'>link</a>" }
    Ostrel.DashedFrame { id: frame; y: 200; width: 40; height: 20 }

    SignalSpy { id: clicks; signalName: "clicked" }
    SignalSpy { id: triggers; target: action; signalName: "triggered" }

    TestCase {
        name: "Buttons"
        when: windowShown

        function init() {
            mouseMove(root, 390, 290)
            root.forceActiveFocus()
            button.enabled = true
            checkBox.checked = false
            otherRadio.checked = true
            triggers.clear()
        }

        function test_keys_data() {
            return [
                { tag: "return", key: Qt.Key_Return, pressed: 1, left: [0, 1] },
                { tag: "space", key: Qt.Key_Space, pressed: 1, left: [0, 0] },
                { tag: "another key", key: Qt.Key_A, pressed: 0, left: [1, 1] }
            ]
        }

        function test_keys(row) {
            for (const control of [button, withAction]) {
                clicks.target = control
                clicks.clear()
                root.presses = root.releases = 0
                control.forceActiveFocus()
                keyPress(row.key)
                compare(clicks.count, row.pressed)
                keyRelease(row.key)
                compare(clicks.count, row.pressed, "nothing more on the release")
                compare([root.presses, root.releases], row.left)
            }
            compare(triggers.count, row.pressed)
        }

        function test_look_data() {
            return [
                { tag: "rest", face: "#111111", border: "#d5d5d5" },
                { tag: "hovered", mouse: true, face: "#fdfdfd", border: "#b5b5b5", raised: true },
                { tag: "down", press: true, face: "#f3f3f3", border: "#b5b5b5", raised: true },
                { tag: "focus", focus: true, face: "#111111", border: "#b5b5b5", raised: true },
                { tag: "disabled", off: true, face: "#111111", border: "#e5e5e5" }
            ]
        }

        function test_look(row) {
            button.enabled = !row.off
            if (row.mouse || row.press)
                mouseMove(button, 20, 10)
            if (row.press)
                mousePress(button, 20, 10)
            if (row.focus)
                button.forceActiveFocus()
            tryCompare(button, "hovered", !!(row.mouse || row.press))
            compare(button.background.color, row.face)
            compare(button.background.borderColor, row.border)
            compare(button.background.isRaised, !!row.raised)
            compare(button.contentItem.color, row.off ? "#a5a5a5" : "#353535")
            fuzzyCompare(button.opacity, row.off ? 0.9 : 1, 0.001)
            if (row.press) {
                clicks.target = button
                clicks.clear()
                mouseRelease(button, 20, 10)
                compare(clicks.count, 1)
            }
        }

        function test_spaceChecks() {
            const box = findChild(checkBox, "box")
            const tick = findChild(checkBox, "tick")
            compare(box.border.color, "#d5d5d5")
            verify(!tick.visible)
            withAction.forceActiveFocus()
            keyClick(Qt.Key_Tab)
            verify(checkBox.visualFocus)
            compare(box.border.color, "#2fbeca")
            keyClick(Qt.Key_Space)
            verify(checkBox.checked && tick.visible)
            keyClick(Qt.Key_Space)
            verify(!checkBox.checked && !tick.visible)
            root.forceActiveFocus()
            mouseMove(checkBox, 10, 10)
            tryCompare(box, "color", "#2200bfcc")
            compare(box.border.color, "#2fbeca")
        }

        function test_spaceChooses() {
            const circle = findChild(radio, "circle")
            compare(circle.color, "#ffffff")
            compare(circle.border.color, "#95989a")
            radio.forceActiveFocus()
            compare(circle.color, "#0800bfcc")
            compare(circle.border.color, "#1a8e96")
            keyClick(Qt.Key_Space)
            verify(radio.checked && findChild(radio, "dot").visible)
            verify(!otherRadio.checked && !findChild(otherRadio, "dot").visible)
        }

        function test_label() {
            const area = findChild(label, "pointer")
            mouseMove(label, 3, label.height / 2)
            tryCompare(area, "cursorShape", Qt.ArrowCursor)
            mouseMove(label, label.width - 5, label.height / 2)
            tryCompare(area, "cursorShape", Qt.PointingHandCursor)
            const box = findChild(label, "focusFrame")
            verify(!box.visible)
            label.forceActiveFocus()
            verify(box.visible)
            compare([box.x, box.y, box.width, box.height], [-2, 0, label.width + 4, label.height])
        }

        function test_sizesAndFrame() {
            compare([button.width, button.height, checkBox.height], [100, 30, 30])
            compare([checkBox.indicator.width, findChild(checkBox, "box").width], [18, 15])
            const image = grabImage(frame)
            compare(image.pixel(2, 0), "#c0c0c0")
            verify(image.pixel(6, 0) !== image.pixel(2, 0), "a gap follows the dash")
            compare(image.pixel(20, 10), image.pixel(6, 0), "nothing is filled")
        }
    }
}
