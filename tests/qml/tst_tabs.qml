import QtQuick 2.15
import QtQuick.Controls 2.15
import QtTest 1.15
import "qrc:/OstrelStyle" as Ostrel

TestCase {
    id: test

    name: "Tabs"
    when: windowShown
    width: 600
    height: 400
    visible: true

    Component {
        id: controlComponent

        Ostrel.TabControl {
            id: control

            // A settings view model as the view sees it.
            property QtObject settings: QtObject {
                property var pages: ["Один", "Два", "Три"].map(function(header) {
                    return { HeaderText: header }
                })
                property int currentIndex: 0
                property var history: []
                onCurrentIndexChanged: history.push(currentIndex)
            }

            anchors.fill: parent
            itemsSource: settings.pages
            currentIndex: settings.currentIndex
            onCurrentIndexChanged: settings.currentIndex = currentIndex
            contentTemplate: Text {
                objectName: "page"
                text: modelData.HeaderText
            }
        }
    }
    Component {
        id: loadingComponent

        Ostrel.TabControl {
            anchors.fill: parent
        }
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
        let found = matches(item) && item.visible ? [item] : []
        for (let i = 0; i < item.children.length; ++i)
            found = found.concat(find(item.children[i], matches))
        return found
    }

    function tab(control, text) {
        return find(control, function(item) { return item.text === text && "checked" in item })[0]
    }

    function shownPages(control) {
        return find(control, function(item) { return item.objectName === "page" })
            .map(function(page) { return page.text })
    }

    function test_startsAtItsIndex_data() {
        return [
            { tag: "first", index: 0, page: "Один" },
            { tag: "last", index: 2, page: "Три" },
            { tag: "beyond the last", index: 7, page: "Три" }
        ]
    }
    function test_startsAtItsIndex(data) {
        const control = makeControl(data.index)
        compare(shownPages(control), [data.page])
        compare(tab(control, data.page).checked, true)
        compare(tab(control, data.page).z, 1)
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
        tryVerify(function() { return tab(control, "Два").visualFocus })
        keyClick(Qt.Key_Left)
        compare(shownPages(control), ["Один"])
        keyClick(Qt.Key_Tab)
        tryVerify(function() { return tab(control, "Два").visualFocus })
        compare(shownPages(control), ["Один"])
        keyClick(Qt.Key_Space)
        compare(shownPages(control), ["Два"])
        compare(control.settings.currentIndex, 1)
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
        control.settings.pages = data.headers.map(function(header) {
            return { HeaderText: header }
        })
        compare(shownPages(control), [data.headers[data.index]])
        compare(control.settings.currentIndex, data.index)
        compare(control.settings.history.length, data.index === 1 ? 0 : 1)
        control.settings.currentIndex = data.headers.length - 1
        compare(shownPages(control), [data.headers[data.headers.length - 1]])
    }

    function test_pagesComeLater() {
        const control = makeControl(2)
        const pages = control.settings.pages
        control.settings.pages = []
        compare(shownPages(control), [])
        control.settings.pages = pages
        compare(shownPages(control), ["Три"])
    }

    function test_loadsViewByItsModel() {
        const control = createTemporaryObject(loadingComponent, test, {
            getViewTemplate: function(page) { return page.view },
            itemsSource: [{ HeaderText: "Метка", view: "qrc:/OstrelStyle/DashedFrame.qml" }]
        })
        const loaded = find(control, function(item) {
            return String(item.source).endsWith("DashedFrame.qml")
        })
        compare(loaded.length, 1)
        compare(loaded[0].status, Loader.Ready)
    }
}
