import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import QtTest 1.15
import Tests 1.0
import "qrc:/Controls" as Validated
import "qrc:/OstrelStyle" as Ostrel

Item {
    id: root

    width: 500; height: 400

    TextField { id: field; y: 100; Accessible.name: "field" }
    TextArea { id: area; x: 200; y: 100; width: 180 }
    ComboBox { id: combo; y: 200; model: ["first", "second"] }
    ComboBox { id: editable; x: 200; y: 200; editable: true; model: ["first", "second"] }
    Ostrel.InfoTooltip { id: tooltip; x: 20; y: 250 }

    CheckedText { id: checkedText }
    Validated.ValidatableText { id: validated; y: 300 }
    Validated.ValidatableTextArea { id: validatedArea; x: 200; y: 300; width: 180 }
    Component { id: otherText; CheckedText {} }
    Component {
        id: windowWithCombo
        Ostrel.SubWindow {
            property alias list: windowCombo.popup
            ComboBox { id: windowCombo; model: 3; focus: true }
        }
    }

    TestCase {
        name: "Fields"
        when: windowShown

        function init() {
            mouseMove(root, 490, 390)
            root.forceActiveFocus()
            for (const control of [field, area, combo, editable]) {
                control.enabled = true
                control.isErrorShown = false
                control.errorText = ""
            }
            combo.currentIndex = 0
            editable.currentIndex = 0
            validated.validatable = checkedText
            validatedArea.validatable = null
            checkedText.give("")
        }

        function test_error_data() {
            const states = [
                { tag: "no error" },
                { tag: "no error, focus", focus: true, thick: true },
                { tag: "no error, mouse", mouse: true },
                { tag: "shown", shown: true, has: true, shows: true },
                { tag: "text", text: "e", has: true },
                { tag: "text, focus", text: "e", focus: true, has: true, shows: true, thick: true },
                { tag: "text, mouse", text: "e", mouse: true, has: true, shows: true },
                { tag: "text, disabled", text: "e", off: true, has: true }
            ]
            return ["field", "area", "combo", "editable"].reduce((rows, control) => rows.concat(
                states.map(state => Object.assign({}, state, {
                    control: control, tag: control + ": " + state.tag
                }))), [])
        }

        function test_error(row) {
            const control = { field, area, combo, editable }[row.control]
            const isCombo = control === combo || control === editable
            control.errorText = row.text || ""
            control.isErrorShown = !!row.shown
            control.enabled = !row.off
            if (row.focus)
                control.forceActiveFocus()
            if (row.mouse)
                mouseMove(control, 60, 12)
            tryCompare(control, "hovered", !!row.mouse)

            compare(control.hasError(), !!row.has)
            compare(control.needShowError(), !!row.shows)
            compare(findChild(control, "errorMark").visible, !!row.has)
            compare(control.background.color, row.has && !isCombo ? "#2200bfcc" : "#ffffff")
            const accented = row.focus || row.has || (isCombo && row.mouse)
            compare(control.background.border.color,
                    row.off ? "#e5e5e5" : accented ? "#2fbeca" : "#d5d5d5")
            compare(control.background.border.width, row.thick && control !== combo ? 2 : 1)
            if (isCombo) {
                compare(control.indicator.color, row.off ? "#e5e5e5"
                        : row.focus || row.mouse ? "#2fbeca" : "#d5d5d5")
            }
            const message = findChild(control, "content")
            tryCompare(message, "opacity", row.shows ? 1 : 0)
            compare(message.visible, !!(row.shows && row.text))
        }

        function test_tooltip_data() {
            return [
                { tag: "natural width", limit: NaN },
                { tag: "narrower than the limit", limit: 300 },
                { tag: "wrapped at the limit", limit: 50, width: 70 }
            ]
        }

        function test_tooltip(row) {
            tooltip.infoMessage = "one two three"
            tooltip.maxWidth = row.limit
            tooltip.isShown = true
            const content = findChild(tooltip, "content")
            tryCompare(content, "x", 0)
            tryCompare(content, "opacity", 1)
            compare([content.y, tooltip.height], [64, content.height + 64])
            compare(content.height > 34, !!row.width, "height " + content.height)
            if (row.width)
                compare(content.width, row.width)
            tooltip.isShown = false
            tryCompare(content, "y", tooltip.height)
            compare([content.x, content.opacity], [tooltip.width / 8, 0])
        }

        function test_messageFitsAboveTheField() {
            field.errorText = "a message that is far too long for such a field as this one is"
            field.isErrorShown = true
            const content = findChild(field, "content")
            tryCompare(content, "opacity", 1)
            compare(content.width, field.width - 24 + 20)
            tryVerify(() => content.mapToItem(field, 0, content.height).y === 0)
            verify(field.z > combo.z, "no neighbour covers the message")
        }

        function test_escapeClosesTheListBeforeTheWindow() {
            const window = createTemporaryObject(windowWithCombo, root)
            window.centerPosition()
            compare([window.x, window.y], [Math.trunc((Screen.width - window.width) / 2),
                                           Math.trunc((Screen.height - window.height) / 2)])
            window.requestActivate()
            tryCompare(window, "active", true)
            window.list.open()
            tryCompare(window.list, "opened", true)
            keyClick(Qt.Key_Escape)
            tryCompare(window.list, "visible", false)
            verify(window.visible)
            keyClick(Qt.Key_Escape)
            tryCompare(window, "visible", false)
        }

        function test_comboList() {
            combo.model = ["short", "a text so long that it does not fit into a line", "last"]
            combo.currentIndex = 1
            combo.popup.open()
            tryCompare(combo.popup, "opened", true)
            const list = combo.popup.contentItem
            compare([combo.popup.y, combo.popup.width], [combo.height + 2, combo.width])
            verify(list.itemAtIndex(1).height > list.itemAtIndex(0).height + 10, "it wraps")
            verify(list.itemAtIndex(1).font.bold && !list.itemAtIndex(0).font.bold)
            compare(list.highlightItem.color, "#2200bfcc")
            mouseClick(list.itemAtIndex(2))
            tryCompare(combo.popup, "visible", false)
            compare(combo.displayText, "last")

            combo.model = 100
            combo.popup.open()
            tryCompare(combo.popup, "opened", true)
            compare(combo.popup.height, root.height - 12)
            combo.popup.close()
            tryCompare(combo.popup, "visible", false)
            combo.model = ["first", "second"]
        }

        function test_typingReachesTheObject() {
            validated.forceActiveFocus()
            for (const key of "ab")
                keyClick(key)
            validated.cursorPosition = 1
            keyClick("1")
            compare([checkedText.Text, validated.text], ["a1b", "a1b"])
            compare(validated.cursorPosition, 2)
            compare(validated.errorText, "no digits")
            verify(validated.needShowError())
            // The program's own text is shown unchecked.
            const checks = checkedText.checks
            checkedText.give("22")
            compare([validated.text, validated.errorText, checkedText.checks], ["22", "", checks])
            keyClick("3")
            compare(checkedText.Text, "223")
        }

        function test_swappedObjectsKeepTheirTexts() {
            const other = otherText.createObject(root)
            other.give("other")
            checkedText.give("own")
            validated.validatable = other
            compare([validated.text, other.Text, checkedText.Text], ["other", "other", "own"])
            other.destroy()
            tryCompare(validated, "validatable", null)
            compare(validated.text, "")
        }

        function test_refusalTakesTheFocus() {
            for (const control of [validated, validatedArea]) {
                validated.validatable = null
                control.validatable = checkedText
                checkedText.give("1")
                verify(!control.activeFocus)
                verify(!checkedText.check())
                verify(control.activeFocus && control.hasError(), control)
                checkedText.give("")
            }
        }

        function test_tabLeavesATextArea() {
            for (const key of [Qt.Key_Tab, Qt.Key_Backtab]) {
                validatedArea.forceActiveFocus()
                keyClick(key)
                verify(!validatedArea.activeFocus)
            }
            verify(validated.activeFocus)
            compare(validatedArea.text, "")
        }
    }
}
