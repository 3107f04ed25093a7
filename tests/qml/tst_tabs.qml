import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import "qrc:/OstrelStyle" as Ostrel

TestCase {
    id: test

    name: "Tabs"
    when: windowShown
    width: 600; height: 400; visible: true

    Component {
        id: controlComponent
        Ostrel.TabControl {
            // A settings view model as the view sees it.
            property QtObject settings: QtObject {
                property var pages: test.pages(["Один", "Два", "Три"])
                property int currentIndex: 0
                property var history: []
                onCurrentIndexChanged: history.push(currentIndex)
            }

            anchors.fill: parent
            itemsSource: settings.pages
            currentIndex: settings.currentIndex
            onCurrentIndexChanged: settings.currentIndex = currentIndex
            contentTemplate: Text { objectName: "page"; text: modelData.HeaderText }
        }
    }
    Component { id: loadingComponent; Ostrel.TabControl { anchors.fill: parent } }

    function pages(headers) {
        return headers.map(HeaderText => ({ HeaderText }))
    }

    function makeControl(index) {
        const control = createTemporaryObject(controlComponent, test, {
            "settings.currentIndex": index
        })
        control.settings.history = []
        waitForRendering(control)
        return control
    }

    function find(item, matches) {
        const own = matches(item) && item.visible ? [item] : []
        return Array.from(item.children).reduce((all, child) => all.concat(find(child, matches)), own)
    }

    function tab(control, text) {
        return find(control, item => item.text === text && "checked" in item)[0]
    }

    function shownPages(control) {
        return find(control, item => item.objectName === "page").map(page => page.text)
    }

    function test_startsAtItsIndex() {
        for (const index of [2, 7]) {
            const control = makeControl(index)
            const current = tab(control, "Три")
            compare(shownPages(control), ["Три"], "index " + index)
            compare([current.checked, current.z], [true, 1], "index " + index)
        }
    }

    function test_indexGoesBothWays() {
        const control = makeControl(0)
        control.settings.currentIndex = 2
        compare(shownPages(control), ["Три"])
        mouseClick(tab(control, "Два"))
        compare(shownPages(control), ["Два"])
        compare(control.settings.currentIndex, 1)
        control.settings.currentIndex = 0
        compare(shownPages(control), ["Один"])
        compare(tab(control, "Один").checked, true)
        compare(control.settings.history, [2, 1, 0], "every change is told once")
    }

    function test_keys() {
        const control = makeControl(0)
        tab(control, "Один").forceActiveFocus(Qt.TabFocusReason)
        keyClick(Qt.Key_Right)
        compare(shownPages(control), ["Два"])
        tryVerify(() => tab(control, "Два").visualFocus)
        keyClick(Qt.Key_Left)
        compare(shownPages(control), ["Один"])
        keyClick(Qt.Key_Tab)
        tryVerify(() => tab(control, "Два").visualFocus)
        compare(shownPages(control), ["Один"])
        keyClick(Qt.Key_Space)
        compare(shownPages(control), ["Два"])
    }

    function test_rebuilds_data() {
        return [
            { tag: "the same pages", headers: ["Один", "Два", "Три"], index: 1 },
            { tag: "more pages", headers: ["A", "B", "C", "D"], index: 1 },
            { tag: "fewer than the index", headers: ["A"], index: 0 }
        ]
    }
    function test_rebuilds(data) {
        const control = makeControl(1)
        control.settings.pages = pages(data.headers)
        compare(shownPages(control), [data.headers[data.index]])
        compare(control.settings.currentIndex, data.index)
        compare(control.settings.history.length, data.index === 1 ? 0 : 1)
        control.settings.currentIndex = data.headers.length - 1
        compare(shownPages(control), [data.headers[data.headers.length - 1]])
    }

    function test_pagesComeLater() {
        const control = makeControl(2)
        const later = control.settings.pages
        control.settings.pages = []
        compare(shownPages(control), [])
        control.settings.pages = later
        compare(shownPages(control), ["Три"])
    }

    function test_loadsViewByItsModel() {
        const control = createTemporaryObject(loadingComponent, test, {
            getViewTemplate: page => page.view,
            itemsSource: [{ HeaderText: "Метка", view: "qrc:/OstrelStyle/DashedFrame.qml" }]
        })
        const loaded = find(control, item => String(item.source).endsWith("DashedFrame.qml"))
        compare(loaded.map(loader => loader.status), [Loader.Ready])
    }
}
