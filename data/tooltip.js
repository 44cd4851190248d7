// Help tips of the report pages: a "?" button shows the tip written right after it.

function tipOf(button) {
  var next = button.nextElementSibling;
  while (next && !(next.classList && next.classList.contains("tooltip"))) next = next.nextElementSibling;
  return next;
}

function show(button) {
  var tip = tipOf(button);
  if (!tip) return;
  tip.classList.add("shown");
  // The button and its tip share a parent, so both offsets count from the same box.
  var left = button.offsetLeft;
  var room = document.documentElement.clientWidth - 16;
  if (left + tip.offsetWidth > room) left = Math.max(0, room - tip.offsetWidth);
  tip.style.left = left + "px";
  tip.style.top = (button.offsetTop + button.offsetHeight + 4) + "px";
}

function hide(button) {
  var tip = tipOf(button);
  if (tip) tip.classList.remove("shown");
}
