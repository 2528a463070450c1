// Changing what may be changed: the operation of CIM that everybody else sends, and its answer as it is.
import { el, text } from "./dom.js";

const kFixed = new Set(["InstanceId"]);
const kChangeable = {
  ZEB_EthEventSettings: (property) => !kFixed.has(property.name) && ["boolean", "uint32"].includes(property.type),
  ZEB_EthernetMemberOfCollection: (property) => property.name === "Included",
};

const escaped = (words) => words.replace(/[&<>"]/g, (sign) => `&#${sign.charCodeAt(0)};`);

/// 'Class.A="x",B="y"' as an INSTANCENAME. Reference keys are paths, escaped once more.
function instanceName(path) {
  const [, className, keys] = /^(?:[^:"]*:)?([A-Za-z0-9_]+)\.(.*)$/s.exec(path);
  let bindings = "";
  for (const [, name, value] of keys.matchAll(/([A-Za-z0-9_]+)="((?:[^"\\]|\\.)*)"/gs)) {
    const plain = value.replace(/\\(.)/gs, "$1");
    const reference = /^(?:\/\/[^/]*\/)?(?:[^:"]*:)?[A-Za-z0-9_]+\.[A-Za-z0-9_]+="/.test(plain);
    const content = reference
      ? `<VALUE.REFERENCE>${instanceName(plain)}</VALUE.REFERENCE>`
      : `<KEYVALUE VALUETYPE="string">${escaped(plain)}</KEYVALUE>`;
    bindings += `<KEYBINDING NAME="${name}">${content}</KEYBINDING>`;
  }
  return `<INSTANCENAME CLASSNAME="${className}">${bindings}</INSTANCENAME>`;
}

function request(instance, changes) {
  const values = changes.map(({ name, type, value }) => `<PROPERTY NAME="${name}" TYPE="${type}"><VALUE>${escaped(value)}</VALUE></PROPERTY>`).join("");
  const names = changes.map(({ name }) => `<VALUE>${name}</VALUE>`).join("");
  return (
    '<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ>' +
    '<IMETHODCALL NAME="ModifyInstance"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="jxv"/></LOCALNAMESPACEPATH>' +
    `<IPARAMVALUE NAME="ModifiedInstance"><VALUE.NAMEDINSTANCE>${instanceName(instance.path)}<INSTANCE CLASSNAME="${instance.class}">${values}</INSTANCE></VALUE.NAMEDINSTANCE></IPARAMVALUE>` +
    `<IPARAMVALUE NAME="PropertyList"><VALUE.ARRAY>${names}</VALUE.ARRAY></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>`
  );
}

async function modify(instance, changes) {
  const answer = await fetch("cimom", {
    method: "POST",
    headers: { "Content-Type": "application/xml; charset=utf-8", CIMOperation: "MethodCall", CIMMethod: "ModifyInstance", CIMObject: "root/jxv" },
    body: request(instance, changes),
  });
  const body = await answer.text();
  if (!answer.ok) return answer.status === 401 ? "Not signed in: only those who may write can change this." : `HTTP ${answer.status} ${body}`;
  // Read by hand: nothing that comes back is ever markup of this page.
  const error = /<ERROR\s[^>]*>/.exec(body)?.[0];
  if (!error) return "";
  const attribute = (name) => new RegExp(`${name}="([^"]*)"`).exec(error)?.[1] ?? "";
  return `CIM error ${attribute("CODE")}: ${attribute("DESCRIPTION").replaceAll("&apos;", "'").replaceAll("&quot;", '"').replaceAll("&amp;", "&")}`;
}

function control(property) {
  const attributes = { id: `set-${property.name}`, name: property.name };
  return property.type === "boolean"
    ? el("input", { ...attributes, type: "checkbox", checked: property.value?.toLowerCase() === "true" })
    : el("input", { ...attributes, type: "number", min: 0, max: 4294967295, value: property.value });
}

/// Null for an instance of which nothing can be changed. `done` is called after a change.
export function changeForm(instance, done) {
  const changeable = instance.properties.filter((property) => kChangeable[instance.class]?.(property));
  if (!changeable.length) return null;
  const controls = new Map(changeable.map((property) => [property, control(property)]));
  const result = el("p", { role: "status", class: "result" });
  const valueOf = (property) => (property.type === "boolean" ? String(controls.get(property).checked) : controls.get(property).value);
  const save = async (event) => {
    event.preventDefault();
    const changed = changeable.filter((property) => valueOf(property) !== String(property.value).toLowerCase());
    if (!changed.length) return result.replaceChildren("Nothing was changed.");
    const refusal = await modify(instance, changed.map((property) => ({ ...property, value: valueOf(property) })));
    result.className = refusal ? "result refused" : "result";
    result.replaceChildren(text(refusal || "Changed."));
    if (!refusal) setTimeout(done, 800);
  };
  return el(
    "form",
    { class: "change", onsubmit: save },
    el("h3", {}, "Change"),
    el("div", { class: "fields" }, [...controls].map(([property, input]) => el("label", {}, input, el("span", {}, property.name)))),
    el("button", { type: "submit" }, "Save"),
    result,
  );
}
