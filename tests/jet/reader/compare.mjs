// Reads files of the older format with quorvik-jet, with the tools beside its library, and with a reader that shares
// nothing with them, and compares tables, columns, types and values: compare.mjs QUORVIK-JET FILE [WHAT-IS-IN-IT.json]
// Tells the first difference and ends with 1. A file whose rows have moved to other pages is compared with what is in
// it; the other two give such rows at the places where they lie, so of these the order does not count.
import { execFileSync } from "node:child_process";
import { deepStrictEqual } from "node:assert";
import { readFileSync } from "node:fs";
import MDBReader from "mdb-reader";

const [reader, file, toldFile] = process.argv.slice(2);
const run = (program, args, options) =>
    execFileSync(program, args, { encoding: "utf8", maxBuffer: 1 << 26, ...options });
const numbers = { byte: 2, integer: 3, long: 4, money: 5, single: 6, double: 7, date: 8, text: 10, bool: 1 };

// Of each reader: [{ name, columns: [[name, type number]], rows: [[value]] }]. The date counts days from 1899-12-30.
function byChild() {
    const tables = [];
    for (const line of run(reader, [], { input: readFileSync(file) }).trim().split("\n").map(JSON.parse)) {
        if (line.table !== undefined)
            tables.push({
                name: line.table,
                columns: line.columns.map(([name, type]) => [name, numbers[type] ?? 0]),
                rows: [],
            });
        else if (Array.isArray(line)) tables.at(-1).rows.push(line);
        else deepStrictEqual(line, {});
    }
    return tables;
}

function byOther() {
    const names = { boolean: "bool", float: "single", currency: "money", datetime: "date" };
    const database = new MDBReader(readFileSync(file));
    return database.getTableNames().map((name) => {
        const table = database.getTable(name);
        const columns = table.getColumns().map((c) => [c.name, numbers[names[c.type] ?? c.type] ?? 0]);
        const value = (v, type) =>
            type === 5 && v !== null ? Number(v) : v instanceof Date ? v.getTime() / 86400000 + 25569 : v;
        const rows = table.getData().map((row) => columns.map(([c, type]) => value(row[c], type)));
        deepStrictEqual(table.rowCount, rows.length, `${name}: the number of rows that the file states`);
        return { name, columns, rows };
    });
}

// Numbers and texts only, and an empty text is left out like a Null. Types are told by other words.
function byTools(columnsOf) {
    const schema = run("mdb-schema", [file]);
    return run("mdb-tables", ["-1", file]).trim().split("\n").map((name) => {
        const columns = columnsOf(name);
        const text = schema.slice(schema.indexOf(`CREATE TABLE [${name}]`)).split(");")[0];
        const words = { byte: "Byte", integer: "Integer", long: "Long Integer", text: "Text" };
        for (const [column, type] of columns)
            for (const [key, word] of Object.entries(words))
                if (numbers[key] === type) deepStrictEqual(text.includes(`[${column}]\t\t\t${word}`), true, text);
        const lines = run("mdb-json", [file, name]).split("\n").filter(Boolean).map(JSON.parse);
        const rows = lines.map((row) =>
            columns.map(([c, type]) => ([1, 8].includes(type) ? "another form" : row[c] ?? null)));
        return { name, columns, rows };
    });
}

const child = byChild();
const other = byOther();
let isMoved = false;
if (toldFile) {
    const told = JSON.parse(readFileSync(toldFile, "utf8"));
    isMoved = told.some((table) => table.moved);
    const content = told.map(({ name, columns, rows }) => ({
        name,
        columns: columns.map(([c, type]) => [c, type]),
        rows,
    }));
    deepStrictEqual(child, content);
    const schema = run("mdb-schema", [file]);
    for (const table of told)
        for (const [column, , size] of table.columns)
            if (size) deepStrictEqual(schema.includes(`[${column}]\t\t\tText (${size})`), true, schema);
}
// What neither keeps is no subject: types that no settings file has.
const inOrder = (tables) =>
    tables.map((table) => {
        const rows = table.rows.map((row) => row.map((v, i) => (table.columns[i][1] === 0 ? "another type" : v)));
        return { ...table, rows: isMoved ? rows.map((row) => JSON.stringify(row)).sort() : rows };
    });
deepStrictEqual(inOrder(other), inOrder(child));
const plain = child.map((table) => ({
    ...table,
    rows: table.rows.map((row) =>
        row.map((v, i) => ([1, 8].includes(table.columns[i][1]) ? "another form" : v === "" ? null : v))),
}));
deepStrictEqual(inOrder(byTools((name) => child.find((t) => t.name === name)?.columns)), inOrder(plain));
console.log(`${file}: ${child.map((t) => `${t.name} ${t.rows.length}`).join(", ")}: the same`);
