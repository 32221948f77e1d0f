// Says so when a field of the joining form was left empty.
function CheckForm(form) {
  for (var i = 0; i < form.elements.length; i++) {
    if (form.elements[i].type == "text" && !form.elements[i].value) { alert(form.elements[i].name + "?"); return false; }
  }
  return true;
}
