import QtQuick 2.15
import QtTest 1.15
import "qrc:/OstrelStyle" as Ostrel

Item {
    width: 400
    height: 300

    Ostrel.DashedFrame {
        id: frame
        width: 40
        height: 20
    }

    TestCase {
        name: "Inputs"
        when: windowShown

        function test_frameIsDashedAndEmpty() {
            const image = grabImage(frame)
            compare(image.pixel(2, 0), "#c0c0c0")
            verify(image.pixel(6, 0) !== image.pixel(2, 0), "a gap follows the dash")
            compare(image.pixel(20, 10), image.pixel(6, 0), "nothing is filled")
        }
    }
}
