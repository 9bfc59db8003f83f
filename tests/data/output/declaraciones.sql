-- Declarations of January 2010 of one premises, one for each form, written as
-- the forms save them: amounts with the comma decimal and groups of
-- thousands, Rectificativa as "Verdadero" or "Falso". Beside each one stands
-- the other version of the period (original against rectification), whose
-- rows must never reach the file. The Guidv of each kept version was given
-- by an earlier generation. One statement a line.

INSERT INTO tPadronesComerciales (idContribuyente, cuit, padron, objeto, grupo, categoria, razon_social, nombre_fantasia, percepcion, retencion, regimen, calle_numero, localidad_departamento, cp) VALUES (1, '20123456786', '0000000012345', '0000000000001', '1', 'A', 'PEREZ @ HIJOS S.A.', 'LA ESQUINA', '1', '1', '0', 'Av. España N° 1.234', 'Córdoba', '5000')

-- F976: the original (ctrl 0) is generated.
INSERT INTO F976 (Codigo, Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, BaseImponible, Impuesto, Accesorios, Multas, PagoACuenta, Percepciones, Retenciones, SaldoAFavor, SaldoAFavorF, SubtotalDeterminado, TotalAPagar, Tasa, ctrl) VALUES ('00000000123450120100000000000001O', '0000000012345', '0000000000001', '01-2010', 'Falso', '0', '123.456,78', '1.234,57', '0,00', '', '100,00', '-12,50', '1.000.000,00', '0,00', '1.234,50', '1.134,57', '1.122,07', '500,00', '0')
INSERT INTO F976 (Codigo, Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, BaseImponible, Impuesto, Accesorios, Multas, PagoACuenta, Percepciones, Retenciones, SaldoAFavor, SaldoAFavorF, SubtotalDeterminado, TotalAPagar, Tasa, ctrl) VALUES ('00000000123450120100000000000001R', '0000000012345', '0000000000001', '01-2010', 'Verdadero', '20-02-2010', '999,99', '9,99', '0,00', '0,00', '0,00', '0,00', '0,00', '0,00', '0,00', '9,99', '9,99', '0,00', '1')
UPDATE F976 SET Guidv = '0A1B2C3D4E5F' WHERE ctrl = '0'
INSERT INTO F976_Detalle (Codigo, FechaRectificativa, CodigoDetalle, TipoActividad, CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) VALUES ('00000000123450120100000000000001O', '0', '0001', 'Venta al por menor', '620100', '100.000,00', '1,00', '1.000,00', '0')
INSERT INTO F976_Detalle (Codigo, FechaRectificativa, CodigoDetalle, TipoActividad, CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) VALUES ('00000000123450120100000000000001O', '0', '0002', 'Servicios @ domicilio', '631200', '23.456,78', '1,00', '234,57', '0')
INSERT INTO F976_Detalle (Codigo, FechaRectificativa, CodigoDetalle, TipoActividad, CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) VALUES ('00000000123450120100000000000001R', '20-02-2010', '0001', 'Otra version', '999999', '999,99', '1,00', '9,99', '1')

-- F2001: the rectification (ctrl 1) is generated; the form gives its Guidv on insert.
INSERT INTO F2001 (Codigo, Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, BaseImponible, Impuesto, Total, SaldoAFavor, Retenciones, Percepciones, Desgrabaciones, SubtotalCol12, SubtotalColumna2, DiferenciaCol12, DiferenciaColumna2, PagoACuenta, TotalAPagar, ctrl, Guidv) VALUES ('00000000123450120100000000000001O', '0000000012345', '0000000000001', '01-2010', 'Falso', '0', '1,00', '0,03', '0,03', '0,00', '0,00', '0,00', '0,00', '0,03', '0,00', '0,03', '0,00', '0,00', '0,03', '0', '2001000000AA')
INSERT INTO F2001 (Codigo, Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, BaseImponible, Impuesto, Total, SaldoAFavor, Retenciones, Percepciones, Desgrabaciones, SubtotalCol12, SubtotalColumna2, DiferenciaCol12, DiferenciaColumna2, PagoACuenta, TotalAPagar, ctrl, Guidv) VALUES ('00000000123450120100000000000001R', '0000000012345', '0000000000001', '01-2010', 'Verdadero', '15-03-2010', '50.000,00', '1.500,00', '1.500,00', '0,00', '150,00', '75,50', '', '1.274,50', '0,00', '1.274,50', '0,00', '200,00', '1.074,50', '1', '2001ABCDEF01')
INSERT INTO F2001_Detalle (Codigo, FechaRectificativa, CodigoDetalle, TipoActividad, CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) VALUES ('00000000123450120100000000000001O', '0', '0001', 'Otra version', '999', '1,00', '3,00', '0,03', '0')
INSERT INTO F2001_Detalle (Codigo, FechaRectificativa, CodigoDetalle, TipoActividad, CodigoActividad, BaseImponible, Alicuota, Impuesto, ctrl) VALUES ('00000000123450120100000000000001R', '15-03-2010', '0001', 'Actividad PROCOM', '101', '50.000,00', '3,00', '1.500,00', '1')

-- F977: the original is generated.
INSERT INTO F977 (Codigo, Padron, Objeto, Domicilio, RazonSocial, Periodo, Rectificativa, FechaRectificativa, Transporte, TotalPercepciones, ctrl) VALUES ('00000000123450120100000000000001O', '0000000012345', '0000000000001', 'Av. España N° 1.234', 'PEREZ @ HIJOS S.A.', '01-2010', 'Falso', '0', '0,00', '1.500,00', '0')
INSERT INTO F977 (Codigo, Padron, Objeto, Domicilio, RazonSocial, Periodo, Rectificativa, FechaRectificativa, Transporte, TotalPercepciones, ctrl) VALUES ('00000000123450120100000000000001R', '0000000012345', '0000000000001', 'Otra version', 'Otra version', '01-2010', 'Verdadero', '10-02-2010', '0,00', '9,99', '1')
UPDATE F977 SET Guidv = '977000000001' WHERE ctrl = '0'
INSERT INTO F977_Detalle (Codigo, FechaRectificativa, CodigoDetalle, Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, ImportePercibido, ctrl) VALUES ('00000000123450120100000000000001O', '0', '0001', '05-01-2010', 'RETE - Retención', '0001-00001234', 'ACME S.R.L.', '30712345679', '0000000099999', '1.000,00', '0')
INSERT INTO F977_Detalle (Codigo, FechaRectificativa, CodigoDetalle, Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, ImportePercibido, ctrl) VALUES ('00000000123450120100000000000001O', '0', '0002', '20-01-2010', 'RETE - Retención', '0001-00001300', 'O''HIGGINS @ CIA', '30598765432', '0000000088888', '500,00', '0')
INSERT INTO F977_Detalle (Codigo, FechaRectificativa, CodigoDetalle, Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, ImportePercibido, ctrl) VALUES ('00000000123450120100000000000001R', '10-02-2010', '0001', '05-01-2010', 'RETE - Retención', '9999', 'Otra version', '30712345679', '0000000099999', '9,99', '1')

-- F978: the rectification is generated.
INSERT INTO F978 (Codigo, Padron, Objeto, Domicilio, RazonSocial, Periodo, Rectificativa, FechaRectificativa, Transporte, TotalPercepciones, ctrl) VALUES ('00000000123450120100000000000001O', '0000000012345', '0000000000001', 'Otra version', 'Otra version', '01-2010', 'Falso', '0', '0,00', '9,99', '0')
INSERT INTO F978 (Codigo, Padron, Objeto, Domicilio, RazonSocial, Periodo, Rectificativa, FechaRectificativa, Transporte, TotalPercepciones, ctrl) VALUES ('00000000123450120100000000000001R', '0000000012345', '0000000000001', 'Av. España N° 1.234', 'PEREZ @ HIJOS S.A.', '01-2010', 'Verdadero', '10-02-2010', '100,00', '2.345,60', '1')
UPDATE F978 SET Guidv = '978000000001' WHERE ctrl = '1'
INSERT INTO F978_Detalle (Codigo, FechaRectificativa, CodigoDetalle, Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, ImportePercibido, ctrl) VALUES ('00000000123450120100000000000001O', '0', '0001', '07-01-2010', 'FACA - Factura A', '9999', 'Otra version', '30700000001', '0000000077777', '9,99', '0')
INSERT INTO F978_Detalle (Codigo, FechaRectificativa, CodigoDetalle, Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, ImportePercibido, ctrl) VALUES ('00000000123450120100000000000001R', '10-02-2010', '0001', '07-01-2010', 'FACA - Factura A', '0002-00004567', 'Distribuidora Ñandú', '30700000001', '0000000077777', '2.245,60', '1')

-- F985: the original is generated; its line came from an import, without voucher type.
INSERT INTO F985 (Codigo, Padron, Objeto, Domicilio, RazonSocial, Periodo, Rectificativa, FechaRectificativa, Transporte, TotalPercepciones, ctrl) VALUES ('00000000123450120100000000000001O', '0000000012345', '0000000000001', 'Av. España N° 1.234', 'PEREZ @ HIJOS S.A.', '01-2010', 'Falso', '0', '', '300,00', '0')
UPDATE F985 SET Guidv = '985000000001' WHERE ctrl = '0'
INSERT INTO F985_Detalle (Codigo, FechaRectificativa, CodigoDetalle, Fecha, NroComprobante, Denominacion, Cuit, Padron, ImportePercibido, ctrl) VALUES ('00000000123450120100000000000001O', '0', '0001', '11-01-2010', '0003-00000001', 'Juan Pérez', '20111111112', '0000000066666', '300,00', '0')

-- F987: the rectification is generated.
INSERT INTO F987 (Codigo, Padron, Objeto, Domicilio, RazonSocial, Periodo, Rectificativa, FechaRectificativa, Transporte, TotalPercepciones, ctrl) VALUES ('00000000123450120100000000000001O', '0000000012345', '0000000000001', 'Otra version', 'Otra version', '01-2010', 'Falso', '0', '0,00', '9,99', '0')
INSERT INTO F987 (Codigo, Padron, Objeto, Domicilio, RazonSocial, Periodo, Rectificativa, FechaRectificativa, Transporte, TotalPercepciones, ctrl) VALUES ('00000000123450120100000000000001R', '0000000012345', '0000000000001', 'Av. España N° 1.234', 'PEREZ @ HIJOS S.A.', '01-2010', 'Verdadero', '25-02-2010', '0,00', '1.200,00', '1')
UPDATE F987 SET Guidv = '987000000001' WHERE ctrl = '1'
INSERT INTO F987_Detalle (Codigo, FechaRectificativa, CodigoDetalle, Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, ImportePercibido, ctrl) VALUES ('00000000123450120100000000000001R', '25-02-2010', '0001', '12-01-2010', 'FACB - Factura B', '0004-00000099', 'Kiosco "El Sol"', '27222222223', '0000000055555', '1.234,56', '1')
INSERT INTO F987_Detalle (Codigo, FechaRectificativa, CodigoDetalle, Fecha, TipoComprobante, NroComprobante, Denominacion, Cuit, Padron, ImportePercibido, ctrl) VALUES ('00000000123450120100000000000001R', '25-02-2010', '0002', '13-01-2010', 'NC', '0004-00000100', 'Kiosco "El Sol"', '27222222223', '0000000055555', '-34,56', '1')

-- F986: the original is generated.
INSERT INTO F986 (Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, RazonSocial, Contribuyente, Domicilio, ImpPercibidoF985, AccesoriosCoef, Multas, Otros, ImporteDepositar, ctrl) VALUES ('0000000012345', '0000000000001', '01-2010', 'Falso', '0', 'PEREZ @ HIJOS S.A.', 'PEREZ JUAN', 'Av. España N° 1.234', '2.000,00', '10,00', '', '0,00', '2.010,00', '0')
INSERT INTO F986 (Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, RazonSocial, Contribuyente, Domicilio, ImpPercibidoF985, AccesoriosCoef, Multas, Otros, ImporteDepositar, ctrl) VALUES ('0000000012345', '0000000000001', '01-2010', 'Verdadero', '20-02-2010', 'Otra version', 'Otra version', 'Otra version', '9,99', '0,00', '0,00', '0,00', '9,99', '1')
UPDATE F986 SET Guidv = '986000000001' WHERE ctrl = '0'

-- F988: the rectification is generated.
INSERT INTO F988 (Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, RazonSocial, Contribuyente, Domicilio, ImpPercibidoF987, AccesoriosCoef, Multas, Otros, ImporteDepositar, ctrl) VALUES ('0000000012345', '0000000000001', '01-2010', 'Falso', '0', 'Otra version', 'Otra version', 'Otra version', '9,99', '0,00', '0,00', '0,00', '9,99', '0')
INSERT INTO F988 (Padron, Objeto, Periodo, Rectificativa, FechaRectificativa, RazonSocial, Contribuyente, Domicilio, ImpPercibidoF987, AccesoriosCoef, Multas, Otros, ImporteDepositar, ctrl) VALUES ('0000000012345', '0000000000001', '01-2010', 'Verdadero', '20-02-2010', 'PEREZ @ HIJOS S.A.', 'PEREZ JUAN', 'Av. España N° 1.234', '1.200,00', '0,00', '50,00', '', '1.250,00', '1')
UPDATE F988 SET Guidv = '988000000001' WHERE ctrl = '1'
