"use strict";

// How a web form takes part in dictation. docs/form-interface.md tells every code.

const address = new URLSearchParams(location.search);
const socketPort = address.get("port") || 33999;
const restPort = address.get("rest") || 39256;

// The numbers that a form sends, and those that it gets.
const Send = { focus: 5, description: 6, finished: 7, theme: 9 };
const Get = { value: 1, focus: 2, values: 6, partial: 9 };

// What the server is told of the fields; type 0 is a text.
const fields = [
    { Key: "complaints", Name: "Жалобы", Type: 0 },
    { Key: "anamnesis", Name: "Анамнез", Type: 0 },
    { Key: "conclusion", Name: "Заключение", Type: 0 },
];

const RETRY_MS = 2000;
// The interface closes a form with this code when another page takes its place.
const REPLACED = 1000;

const byId = (id) => document.getElementById(id);
const fieldOf = (key) => document.querySelector(`textarea[name="${CSS.escape(key)}"]`);

let socket = null;
let reconnection = 0; // timers
let themesRetry = 0;
let isTold = false; // the focus is being moved at the server's word
let lastField = fields[0].Key; // a button that is pressed has the focus itself
// Described and not finished, as far as a form can know: a form mode that is ended by key or by
// voice is not told.
let isDescribed = false;

function send(code, data) {
    if (socket && socket.readyState === WebSocket.OPEN)
        socket.send(JSON.stringify({ MessageType: code, Data: data }));
}

function show(text, isOpen, offersAgain) {
    byId("state").textContent = text;
    byId("connection").classList.toggle("open", isOpen);
    byId("again").hidden = !offersAgain;
    byId("finish").disabled = !isDescribed;
}

function connect() {
    clearTimeout(reconnection);
    if (socket)
        return;
    show("Подключение…", false, false);
    socket = new WebSocket(`ws://127.0.0.1:${socketPort}/`);
    socket.onopen = describe;
    socket.onmessage = (event) => receive(JSON.parse(event.data));
    socket.onclose = lose;
}

// The form introduces itself when it connects, and when the doctor comes back to it after dictation
// was ended by key or by voice. The program tells nothing of that, so the way back is always open.
function describe() {
    isDescribed = true;
    show("Диктовка в форму: говорите", true, true);
    send(Send.description, {
        Key: "examination", Name: document.title, Mode: 0, CultureCode: "ru-RU", ThemeId: "",
        Childs: fields, CustomCommands: [], FormCommands: [], FormSettings: {}, IsDeleted: false,
    });
    send(Send.focus, lastField);
    loadThemes();
}

// Said once only: it ends whatever dictation runs, and the next one may be none of this form's.
function finish() {
    if (isDescribed)
        send(Send.finished, null);
    isDescribed = false;
}

function lose(event) {
    socket = null;
    isDescribed = false;
    clearTimeout(themesRetry);
    byId("partial").textContent = "";
    if (event.code === REPLACED) {
        show("Диктовка идёт в другую страницу", false, true);
        return;
    }
    show("Программа диктовки недоступна, подключение повторится", false, true);
    reconnection = setTimeout(connect, RETRY_MS);
}

function receive({ MessageType: code, Data: data }) {
    if (code === Get.value)
        insert(data);
    else if (code === Get.values)
        data.flat().forEach(insert);
    else if (code === Get.focus)
        focus(data.Key);
    else if (code === Get.partial)
        byId("partial").textContent = data;
}

// The text comes formatted, with the blank that it needs in front.
function insert({ Key: key, Value: value }) {
    const field = fieldOf(key);
    if (!field)
        return;
    field.setRangeText(value, field.selectionStart, field.selectionEnd, "end");
    byId("partial").textContent = "";
}

function focus(key) {
    const field = fieldOf(key);
    if (!field)
        return;
    lastField = key;
    if (field === document.activeElement)
        return;
    isTold = true;
    field.focus();
    isTold = false;
}

// Plain HTTP, through the program, to whatever recognition server it is connected to.
async function loadThemes() {
    clearTimeout(themesRetry);
    const list = byId("theme");
    try {
        const answer = await fetch(`http://127.0.0.1:${restPort}/api/Theme`);
        const themes = (await answer.json()).Data;
        const present = new Option("Как в программе", "");
        list.replaceChildren(present,
                             ...themes.map((theme) => new Option(theme.Name, theme.Id)));
        list.onchange = () => list.value && send(Send.theme, themes[list.selectedIndex - 1]);
        list.disabled = false;
    } catch (error) {
        list.replaceChildren(new Option("Список недоступен"));
        list.disabled = true;
        // The proxy is there once the program has a connection to a server. Another attempt may have
        // failed in the meantime, too.
        clearTimeout(themesRetry);
        if (socket)
            themesRetry = setTimeout(loadThemes, RETRY_MS);
    }
}

for (const { Key: key, Name: name } of fields) {
    const label = Object.assign(document.createElement("label"), { htmlFor: key, textContent: name });
    const field = Object.assign(document.createElement("textarea"), { id: key, name: key });
    field.addEventListener("focus", () => {
        lastField = key;
        if (isDescribed && !isTold)
            send(Send.focus, key);
    });
    byId("fields").append(label, field);
}
byId("again").onclick = () => (socket ? describe() : connect());
byId("finish").onclick = () => {
    finish();
    show("Диктовка в форму закончена", true, true);
};
// Otherwise the program would go on describing a form that is gone.
addEventListener("pagehide", finish);
connect();
