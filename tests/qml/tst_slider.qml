import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15

TestCase {
    id: test

    name: "SliderAndScrollBar"
    when: windowShown
    width: 400; height: 400; visible: true

    Component {
        id: sliderComponent
        Slider { to: 100; stepSize: 1; value: 50; toolTipText: "tip" }
    }
    Component {
        id: listComponent
        ListView {
            width: 200; height: 200
            model: 100
            delegate: Text { text: index }
            ScrollBar.vertical: ScrollBar { }
        }
    }

    function makeSlider(orientation, toolTipEnabled) {
        const slider = createTemporaryObject(sliderComponent, test, { orientation, toolTipEnabled })
        waitForRendering(slider)
        return slider
    }

    function test_toolTip_data() {
        return [
            { tag: "horizontal", orientation: Qt.Horizontal, size: [200, 48], enabled: true },
            { tag: "vertical", orientation: Qt.Vertical, size: [48, 200], enabled: true },
            { tag: "not enabled", orientation: Qt.Horizontal, size: [200, 48], enabled: false }
        ]
    }
    function test_toolTip(data) {
        const slider = makeSlider(data.orientation, data.enabled)
        const handle = slider.handle
        const tip = Array.from(handle.data).find(item => item.delay !== undefined)
        const [x, y] = [slider.width / 2, slider.height / 2]
        slider.forceActiveFocus(Qt.TabFocusReason)
        compare(handle.border.color, "#404040")
        compare([slider.width, slider.height], data.size)
        compare([handle.x, handle.y, handle.width, handle.height], [x - 6.5, y - 6.5, 13, 13])
        mousePress(slider, x, y)
        tryCompare(tip, "opened", data.enabled)
        compare(tip.text, "tip")
        const end = data.orientation === Qt.Vertical ? [x, slider.height] : [0, y]
        mouseMove(slider, ...end, -1, Qt.LeftButton)
        compare(slider.value, 0, "the handle can be dragged")
        compare(tip.visible, data.enabled)
        mouseMove(slider, x, y, -1, Qt.LeftButton)
        mouseRelease(slider, x, y)
        compare(tip.visible, data.enabled, "hovered still")
        mouseMove(slider, x + 1, y + 1)
        mouseMove(slider, x + 2, y + 2)
        tryCompare(tip, "visible", false)
    }

    function test_scrollBar() {
        const list = createTemporaryObject(listComponent, test)
        const bar = list.ScrollBar.vertical
        const handle = bar.contentItem
        waitForRendering(list)
        compare([handle.opacity, bar.width, handle.width], [0, 10, 6])
        bar.active = true
        compare(handle.opacity, 0.75)
        bar.active = false
        compare(handle.opacity, 0.75, "it stays a while")
        tryCompare(handle, "opacity", 0)
        bar.policy = ScrollBar.AlwaysOn
        compare(handle.opacity, 0.75)
        compare(handle.color, "#c0c0c0")
        mouseMove(bar, 5, 5)
        tryCompare(handle, "color", "#b0b0b0")
        mousePress(bar, 5, 5)
        compare(handle.color, "#a0a0a0")
        mouseRelease(bar, 5, 5)
        bar.interactive = false
        compare(handle.implicitWidth, 2)
        bar.policy = ScrollBar.AlwaysOff
        compare(bar.visible, false)

        const few = createTemporaryObject(listComponent, test, { model: 2 })
        waitForRendering(few)
        few.ScrollBar.vertical.active = true
        compare(few.ScrollBar.vertical.contentItem.opacity, 0, "short content needs no bar")
    }
}
