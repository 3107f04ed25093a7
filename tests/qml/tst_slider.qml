import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15

TestCase {
    id: test

    name: "SliderAndScrollBar"
    when: windowShown
    width: 400
    height: 400
    visible: true

    Component {
        id: sliderComponent

        Slider {
            to: 100
            stepSize: 1
            value: 50
            toolTipText: "tip"
        }
    }
    Component {
        id: listComponent

        ListView {
            width: 200
            height: 200
            model: 100
            delegate: Text { text: index }
            ScrollBar.vertical: ScrollBar { }
        }
    }

    function makeSlider(orientation, toolTipEnabled) {
        const slider = createTemporaryObject(sliderComponent, test, {
            orientation: orientation, toolTipEnabled: toolTipEnabled
        })
        waitForRendering(slider)
        return slider
    }

    function toolTip(slider) {
        const data = slider.handle.data
        for (let i = 0; i < data.length; ++i) {
            if (data[i].delay !== undefined)
                return data[i]
        }
        return null
    }

    function test_sizes_data() {
        return [
            { tag: "horizontal", orientation: Qt.Horizontal, width: 200, height: 48 },
            { tag: "vertical", orientation: Qt.Vertical, width: 48, height: 200 }
        ]
    }
    function test_sizes(data) {
        const slider = makeSlider(data.orientation, false)
        compare([slider.width, slider.height], [data.width, data.height])
        compare([slider.handle.width, slider.handle.height], [13, 13])
        compare(slider.handle.x + 6.5, data.width / 2)
        compare(slider.handle.y + 6.5, data.height / 2)
    }

    function test_keysAndWheel() {
        const slider = makeSlider(Qt.Vertical, false)
        slider.forceActiveFocus(Qt.TabFocusReason)
        verify(Qt.colorEqual(slider.handle.border.color, "#404040"))
        keyClick(Qt.Key_Up)
        compare(slider.value, 51)
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Down)
        compare(slider.value, 49)
        slider.wheelEnabled = true
        mouseWheel(slider, 10, 10, 0, 120)
        compare(slider.value, 50)
    }

    function test_toolTip_data() {
        return [
            { tag: "enabled, horizontal", orientation: Qt.Horizontal, enabled: true },
            { tag: "enabled, vertical", orientation: Qt.Vertical, enabled: true },
            { tag: "not enabled", orientation: Qt.Horizontal, enabled: false }
        ]
    }
    function test_toolTip(data) {
        const slider = makeSlider(data.orientation, data.enabled)
        const tip = toolTip(slider)
        const middle = Qt.point(slider.width / 2, slider.height / 2)
        const vertical = data.orientation === Qt.Vertical
        mousePress(slider, middle.x, middle.y)
        compare(slider.pressed, true)
        tryCompare(tip, "opened", data.enabled)
        compare(tip.text, "tip")
        mouseMove(slider, vertical ? middle.x : 0, vertical ? slider.height : middle.y, -1,
                  Qt.LeftButton)
        compare(slider.value, 0, "the handle can be dragged")
        compare(tip.visible, data.enabled)
        mouseMove(slider, middle.x, middle.y, -1, Qt.LeftButton)
        mouseRelease(slider, middle.x, middle.y)
        compare(slider.pressed, false)
        compare(tip.visible, data.enabled)
        mouseMove(slider, middle.x + 1, middle.y + 1)
        mouseMove(slider, middle.x + 2, middle.y + 2)
        tryCompare(tip, "visible", false)
    }

    function test_scrollBar() {
        const list = createTemporaryObject(listComponent, test)
        const bar = list.ScrollBar.vertical
        waitForRendering(list)
        compare(bar.contentItem.opacity, 0)
        compare([bar.width, bar.contentItem.width], [10, 6])
        bar.active = true
        compare(bar.contentItem.opacity, 0.75)
        bar.active = false
        compare(bar.contentItem.opacity, 0.75, "it stays a while")
        tryCompare(bar.contentItem, "opacity", 0)
        bar.policy = ScrollBar.AlwaysOn
        compare(bar.contentItem.opacity, 0.75)
        verify(Qt.colorEqual(bar.contentItem.color, "#C0C0C0"))
        mouseMove(bar, 5, 5)
        tryVerify(function() { return Qt.colorEqual(bar.contentItem.color, "#B0B0B0") })
        mousePress(bar, 5, 5)
        verify(Qt.colorEqual(bar.contentItem.color, "#A0A0A0"))
        mouseRelease(bar, 5, 5)
        bar.interactive = false
        compare(bar.contentItem.implicitWidth, 2)
        bar.policy = ScrollBar.AlwaysOff
        compare(bar.visible, false)
    }

    function test_shortContentNeedsNoBar() {
        const list = createTemporaryObject(listComponent, test, { model: 2 })
        waitForRendering(list)
        list.ScrollBar.vertical.active = true
        compare(list.ScrollBar.vertical.contentItem.opacity, 0)
    }
}
