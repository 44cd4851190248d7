// Sorts the rows of every table of class "sortable" by the column whose header is clicked.
// A second click on the same header reverses the order. Columns that hold only numbers sort
// as numbers; others sort as text, with runs of digits compared by value ("disk 2" before "disk 10").

(function () {
  "use strict";

  var NUMBER = /^[-+]?(\d+|\d{1,3}(,\d{3})+)(\.\d+)?([eE][-+]?\d+)?$/;

  function cellKey(cell) {
    if (!cell) return "";
    var text = cell.textContent.replace(/\s+/g, " ").trim();
    if (text) return text;
    // Severity columns hold only an icon; its file name keeps equal icons together.
    var image = cell.querySelector("img");
    return image ? image.getAttribute("src") || "" : "";
  }

  function asNumber(text) {
    return NUMBER.test(text) ? parseFloat(text.replace(/,/g, "")) : NaN;
  }

  function headerRow(table) {
    for (var i = 0; i < table.rows.length; i++) {
      var row = table.rows[i];
      if (row.cells.length && row.cells[0].tagName === "TH" && row.querySelector("td") === null) return row;
    }
    return null;
  }

  function dataRows(table, header) {
    var rows = [];
    for (var i = 0; i < table.rows.length; i++)
      if (table.rows[i] !== header && table.rows[i].parentNode.closest("table") === table) rows.push(table.rows[i]);
    return rows;
  }

  function comparison(numeric) {
    if (numeric) {
      return function (a, b) {
        // Empty cells go last in either direction of a numeric sort.
        if (isNaN(a.number)) return isNaN(b.number) ? 0 : 1;
        if (isNaN(b.number)) return -1;
        return a.number - b.number;
      };
    }
    var collator = new Intl.Collator(undefined, { numeric: true, sensitivity: "base" });
    return function (a, b) { return collator.compare(a.text, b.text); };
  }

  function sortColumn(table, header, column) {
    var descending = header.cells[column].classList.contains("sorted-ascending");
    var rows = dataRows(table, header);
    var numeric = true;
    var keys = rows.map(function (row, index) {
      var text = cellKey(row.cells[column]);
      var number = text === "" ? NaN : asNumber(text);
      if (text !== "" && isNaN(number)) numeric = false;
      return { row: row, text: text, number: number, index: index };
    });
    var compare = comparison(numeric);
    keys.sort(function (a, b) {
      var order = compare(a, b);
      if (descending && !(numeric && (isNaN(a.number) || isNaN(b.number)))) order = -order;
      return order || a.index - b.index;
    });
    var body = rows.length ? rows[0].parentNode : null;
    keys.forEach(function (key, index) {
      body.appendChild(key.row);
      // Keep the stripes alternating in the new order.
      key.row.classList.remove("bg0", "bg1");
      key.row.classList.add(index % 2 ? "bg1" : "bg0");
    });
    for (var i = 0; i < header.cells.length; i++)
      header.cells[i].classList.remove("sorted-ascending", "sorted-descending");
    header.cells[column].classList.add(descending ? "sorted-descending" : "sorted-ascending");
  }

  function makeSortable(table) {
    var header = headerRow(table);
    if (!header) return;
    Array.prototype.forEach.call(header.cells, function (cell, column) {
      cell.title = "Click to sort";
      cell.addEventListener("click", function () { sortColumn(table, header, column); });
    });
  }

  function init() {
    Array.prototype.forEach.call(document.querySelectorAll("table.sortable"), makeSortable);
  }

  if (document.readyState === "loading") document.addEventListener("DOMContentLoaded", init);
  else init();
})();
