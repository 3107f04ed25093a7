import QtQuick 2.15
import QtQuick.Controls 1.4
import QtTest 1.15
import Tests 1.0
import "qrc:/OstrelStyle" as Ostrel

TestCase {
    id: test

    name: "Grid"
    when: windowShown
    width: 600; height: 400; visible: true

    Component { id: listComponent; IndexedList { } }
    Component {
        id: gridComponent
        Ostrel.DataGrid {
            anchors.fill: parent
            TableViewColumn { role: "name"; title: "Name"; width: 200 }
            TableViewColumn { role: "name"; title: "Again"; width: 300 }
        }
    }

    function makeList(index) {
        const list = createTemporaryObject(listComponent, test)
        for (const name of "abcde")
            list.append(name)
        list.moveTo(index)
        return list
    }

    function makeGrid(list) {
        const grid = createTemporaryObject(gridComponent, test, { model: list })
        tryCompare(grid, "rowCount", 5)
        waitForRendering(grid)
        return grid
    }

    function selected(grid) {
        const rows = []
        grid.selection.forEach(row => rows.push(row))
        return rows
    }

    // A row's parts, found by what they are: the background, and the cells.
    function parts(item, matches) {
        const own = matches(item) && item.visible ? [item] : []
        return Array.from(item.children).reduce((all, child) => all.concat(parts(child, matches)), own)
    }

    function rows(grid) {
        return parts(grid, item => item.isGridRow === true)
            .sort((a, b) => a.mapToItem(grid, 0, 0).y - b.mapToItem(grid, 0, 0).y)
    }

    function test_modelMovesSelection_data() {
        return [
            { tag: "none to a row", from: -1, to: 2, rows: [2] },
            { tag: "a row to its neighbour", from: 1, to: 2, rows: [2] },
            { tag: "a row to none", from: 4, to: -1, rows: [] },
            { tag: "beyond the end", from: 1, to: 9, rows: [] }
        ]
    }
    function test_modelMovesSelection(data) {
        const list = makeList(data.from)
        const grid = makeGrid(list)
        compare(selected(grid), data.from < 0 ? [] : [data.from])
        list.written = []
        list.moveTo(data.to)
        compare(selected(grid), data.rows)
        compare(list.written, [], "the model is not told what it said itself")
        compare(list.CurrentIndex, data.to)
        compare(grid.isSelectionChanging, false)
    }

    function test_userMovesModel() {
        const list = makeList(-1)
        const grid = makeGrid(list)
        list.written = []
        mouseClick(rows(grid)[2])
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Up)
        keyClick(Qt.Key_Up)
        compare(list.written, [2, 3, 2, 1])
        compare(selected(grid), [1])
        list.moveTo(3)
        keyClick(Qt.Key_Down)
        compare(list.CurrentIndex, 4, "arrows go on from the model's row")
        compare(selected(grid), [4])
        grid.selection.clear()
        compare(list.CurrentIndex, -1)
    }

    function test_rowsComeAndGo() {
        const list = makeList(4)
        const grid = makeGrid(list)
        list.append("f")
        list.moveTo(5)
        compare(selected(grid), [5])
        list.removeAt(5)
        compare(selected(grid), [4])
        compare(list.CurrentIndex, 4)
        for (let i = 0; i < 5; ++i)
            list.removeAt(0)
        compare(selected(grid), [])
        compare(list.CurrentIndex, -1)
        tryCompare(grid, "rowCount", 0)
    }

    function test_anotherModelKeepsItsIndex() {
        const first = makeList(1)
        const second = makeList(3)
        const grid = makeGrid(first)
        grid.model = second
        tryVerify(() => selected(grid).join() === "3")
        tryCompare(grid, "currentRow", 3)
        compare([first.CurrentIndex, second.CurrentIndex], [1, 3])
        first.moveTo(0)
        compare(selected(grid), [3])
        grid.model = null
        compare(selected(grid), [])
        compare([first.CurrentIndex, second.CurrentIndex], [0, 3])
    }

    function test_rowsFitTheirText() {
        const list = makeList(-1)
        list.append("слово ".repeat(60))
        const grid = createTemporaryObject(gridComponent, test, { model: list })
        tryVerify(() => rows(grid).length === 6)
        const cell = parts(grid, item => item.contentHeight > 60 && item.text)[0]
        tryVerify(() => rows(grid)[5].height === cell.contentHeight + 20)
        compare(rows(grid)[0].height, 40)
        const before = rows(grid)[5].height
        grid.getColumn(0).width = 400
        tryVerify(() => rows(grid)[5].height < before, 2000, "wider is lower")
    }

    function test_rowsHaveColours() {
        const grid = createTemporaryObject(gridComponent, test, {
            model: makeList(-1), fontColorGetter: row => row === 2 ? "#CE3535" : "#353535"
        })
        tryVerify(() => rows(grid).length === 5)
        const red = parts(grid, item => item.text && Qt.colorEqual(item.color, "#CE3535"))
        compare(red.map(cell => cell.text), ["c", "c"])
        compare(rows(grid)[0].color, "#ffffff")
        compare(rows(grid)[1].color, "#f7f7f7")
    }
}
